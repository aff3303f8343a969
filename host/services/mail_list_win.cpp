// The list of mails: how many there are, which is open, moving between them, and their marks. The mails are
// listed in the order in which they were read; the open one is the root mail and the current one.
#include "host/requests/request_server_win.h"
#include "host/services/selection_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

std::vector<std::size_t> List(Request& request) { return request.state.MailsOf(request.state.folder()); }

Answer Count(Request& request) { return Request::AnswerNumber(static_cast<Slot>(List(request).size())); }
Answer Index(Request& request) {
  return Request::AnswerNumber(static_cast<Slot>(request.state.ListPosition()));
}

// Opens the mail at a place of the list: 1, or 0 when there is none.
Answer OpenAt(Request& request, std::size_t position) {
  const std::vector<std::size_t> list = List(request);
  return Request::AnswerNumber(position < list.size() && request.state.Open(list[position]) ? 1 : 0);
}

// A negative place becomes one behind every list.
Answer SetIndex(Request& request) { return OpenAt(request, static_cast<std::size_t>(request.Number(0))); }

// Opens the nearest mail of the list in a direction; with `kUnreadOnly` the read ones are passed over.
template <int kStep, bool kUnreadOnly>
Answer Move(Request& request) {
  const std::vector<std::size_t> list = List(request);
  std::size_t position = request.state.ListPosition();
  // Stepping back from 0 wraps to a place behind the list.
  while ((position += static_cast<std::size_t>(kStep)) < list.size()) {
    const bool unread = (request.state.StateWord(list[position]) & kStateUnread) != 0;
    if (unread || !kUnreadOnly) return OpenAt(request, position);
  }
  return {};
}

// --- Selection ---

Answer SelectAll(Request& request) {
  request.state.all_selected = true;
  return Request::AnswerNumber(1);
}

std::vector<std::size_t> Selection(Request& request) {
  if (request.state.all_selected) return List(request);
  if (request.state.found_selected) return request.state.commands.found;
  return {request.state.root()};
}

Answer SelectedCount(Request& request) {
  return Request::AnswerNumber(static_cast<Slot>(Selection(request).size()));
}

Answer LockSelection(Request& request) {
  request.state.locked_selection() = Selection(request);
  return Request::AnswerNumber(1);
}

Answer UnlockSelection(Request& request) {
  request.state.locked_selection().clear();
  return Request::AnswerNumber(1);
}

Answer EnumSelection(Request& request) {
  const std::vector<std::size_t>& locked = request.state.locked_selection();
  const auto position = static_cast<std::size_t>(request.Number(0));
  return Request::AnswerNumber(position < locked.size() && request.state.Open(locked[position]) ? 1 : 0);
}

// --- Marks of the open mail ---

template <std::uint32_t kBit>
Answer Switch(Request& request) {
  const std::size_t root = request.state.root();
  request.state.ChangeState(root, ~request.state.StateWord(root), kBit);
  return Request::AnswerNumber(1);
}

Answer ClearAllUnread(Request& request) {
  for (const std::size_t i : List(request)) request.state.ChangeState(i, 0, kStateUnread);
  return Request::AnswerNumber(1);
}

// bits, mask
Answer SetState(Request& request) {
  request.state.ChangeState(request.state.root(), static_cast<std::uint32_t>(request.Number(0)),
                            static_cast<std::uint32_t>(request.Number(1)));
  return Request::AnswerNumber(1);
}

Answer SetFolding(Request& request) {
  const std::uint32_t changed = kStateNoFolding;
  request.state.ChangeState(request.state.root(), request.Number(0) != 0 ? 0 : changed, changed);
  return Request::AnswerNumber(1);
}

Answer Colour(Request& request) { return Request::AnswerNumber(request.state.colour(request.state.root())); }

Answer SetColour(Request& request) {
  request.state.set_colour(request.state.root(), request.Number(0));
  return Request::AnswerNumber(1);
}

constexpr Service kServices[] = {
    {30, nullptr, Count, "mails in the list"},
    {31, nullptr, Count, "mails in the list"},
    {32, nullptr, Index, "place of the open mail in the list, from 0"},
    {33, nullptr, SetIndex, "opens the mail at a place of the list: 1, 0 when there is none"},
    {95, nullptr, WithRoot<Colour>, "colour label of the open mail"},
    {96, nullptr, WithRoot<SetColour>, "sets the colour label, kept while the program runs: 1"},
    {97, "II", WithRoot<SetState>, "changes bits of the state word: new bits, mask"},
    {131, nullptr, WithRoot<LockSelection>,
     "keeps the selection for `EnumSelection`: the open mail, or all mails of the list, or those found: 1"},
    {132, nullptr, UnlockSelection, "forgets the selection that was kept: 1"},
    {133, nullptr, EnumSelection,
     "opens a mail of the selection that was kept, by its number: 1, 0 behind the last"},
    {149, nullptr, WithRoot<SelectedCount>,
     "mails that are selected: the open one, or all of the list, or those found"},
    {191, nullptr, WithRoot<SelectAll>, "selects all mails of the list, until a mail is opened: 1"},
    {311, "I", WithRoot<SetFolding>, "turns the open mail's folding on or off: 1"},
};

constexpr Command kCommands[] = {
    {40028, Move<1, true>, "opens the next unread mail of the list: 1 when there is one"},
    {40029, Move<-1, true>, "opens the unread mail of the list before: 1 when there is one"},
    {40031, Move<1, false>, "opens the next mail of the list: 1 when there is one"},
    {40032, Move<-1, false>, "opens the mail of the list before: 1 when there is one"},
    {40033, WithRoot<Switch<kStateUnread>>, "switches the open mail between read and unread"},
    {40079, WithRoot<Switch<kStateMarked>>, "switches the mark of the open mail"},
    {40090, WithRoot<Switch<kStateNoFolding>>, "switches the open mail's folding"},
    {40430, ClearAllUnread, "makes all mails of the list read"},
};

}  // namespace

const ServiceFamily kMailListServices = {kServices, kCommands};

std::vector<std::size_t> SelectedMails(Request& request) {
  return request.state.HasRoot() ? Selection(request) : std::vector<std::size_t>{};
}

}  // namespace wrenfold
