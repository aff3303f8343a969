// The list of mails: how many there are, which is open, moving between them, which are selected, and their
// marks. The open mail is the root mail and the current one.
#include "host/mail/missing_mail.h"
#include "host/requests/request_server_win.h"
#include "host/requests/shown_list.h"
#include "host/services/services_win.h"
#include "host/shared/list_moves_win.h"

namespace wrenfold {
namespace {

std::vector<std::size_t> Shown(Request& request) { return ShownMails(request.state, request.state.folder()); }

Answer Count(Request& request) { return Request::AnswerNumber(static_cast<Slot>(Shown(request).size())); }
Answer CountAll(Request& request) {
  return Request::AnswerNumber(static_cast<Slot>(request.state.MailsOf(request.state.folder()).size()));
}

Answer Index(Request& request) {
  const auto place = PlaceIn(Shown(request), request.state.root());
  return Request::AnswerNumber(place ? static_cast<Slot>(*place) : -1);
}

Answer SetIndex(Request& request) {
  const std::vector<std::size_t> list = Shown(request);
  const Slot place = request.Number(0);
  if (place < 0 || place >= static_cast<Slot>(list.size())) {
    return request.NoNumber(place,
                            kNotInList + std::to_string(place) + "; it shows " + std::to_string(list.size()));
  }
  return OpenInList(request, list[static_cast<std::size_t>(place)]);
}

// Opens the nearest mail of the list in a direction; with `kUnreadOnly` the read ones are passed over.
template <int kStep, bool kUnreadOnly>
Answer Move(Request& request) {
  const bool found = MoveInList(request, kStep > 0, [&](std::size_t mail) {
    return !kUnreadOnly || (request.state.StateWord(mail) & kStateUnread) != 0;
  });
  return found ? Request::Done(true)
               : request.None(kStep > 0 ? "no such mail behind the open one"
                                        : "no such mail before the open one");
}

// --- Selection ---

Answer SelectAll(Request& request) {
  request.state.selection.Select(Shown(request));
  return Request::Done(true);
}

Answer SelectedCount(Request& request) {
  return Request::AnswerNumber(static_cast<Slot>(SelectedMails(request.state).size()));
}

Answer LockSelection(Request& request) {
  request.state.selection.Lock(SelectedMails(request.state));
  return Request::Done(true);
}

Answer UnlockSelection(Request& request) {
  request.state.selection.Unlock();
  return Request::Done(true);
}

Answer EnumSelection(Request& request) {
  const std::vector<std::size_t> locked = request.state.selection.Locked();
  const Slot place = request.Number(0);
  if (place < 0 || place >= static_cast<Slot>(locked.size())) {
    return request.NoNumber(place, "no mail " + std::to_string(place) + " is locked; LockSelection took " +
                                       std::to_string(locked.size()));
  }
  return Request::Done(request.state.Open(locked[static_cast<std::size_t>(place)]));
}

// --- The pane that has the focus ---

Answer SelectPane(Request& request) {
  const Slot pane = request.Number(0);
  if (pane < 0 || pane > kLastPane) return request.Fail("no pane " + std::to_string(pane) + ": 0 to 2");
  request.state.list.pane = static_cast<Pane>(pane);
  return Request::Done(true);
}

Answer SelectedPane(Request& request) {
  return Request::AnswerNumber(static_cast<Slot>(request.state.list.pane));
}

Answer SelectAllInPane(Request& request) {
  switch (request.state.list.pane) {
    case Pane::kList:
      return SelectAll(request);
    case Pane::kMail:
      request.state.view.all_text_selected = true;
      return Request::Done(true);
    case Pane::kFolders:
      break;
  }
  return request.Fail("the pane of folders has the focus, where one is selected at a time");
}

// --- Marks of the open mail ---

template <std::uint32_t kBit>
Answer Switch(Request& request) {
  const std::size_t root = request.state.root();
  request.state.ChangeState(root, ~request.state.StateWord(root), kBit);
  return Request::Done(true);
}

Answer ClearAllUnread(Request& request) {
  for (const std::size_t mail : Shown(request)) request.state.ChangeState(mail, 0, kStateUnread);
  return Request::Done(true);
}

// bits, mask
Answer SetState(Request& request) {
  request.state.ChangeCurrentState(static_cast<std::uint32_t>(request.Number(0)),
                                   static_cast<std::uint32_t>(request.Number(1)));
  return Request::Done(true);
}

Answer SetFolding(Request& request) {
  const std::uint32_t changed = kStateNoFolding;
  request.state.ChangeCurrentState(request.Number(0) != 0 ? 0 : changed, changed);
  return Request::Done(true);
}

Answer SwitchFolding(Request& request) {
  request.state.ChangeCurrentState(~request.state.CurrentState(), kStateNoFolding);
  return Request::Done(true);
}

Answer Colour(Request& request) { return Request::AnswerNumber(request.state.colour(request.state.root())); }

Answer SetColour(Request& request) {
  request.state.set_colour(request.state.root(), request.Number(0));
  return Request::Done(true);
}

// --- Accounts ---

Answer ListAccount(Request& request) { return request.AnswerText(FirstAccount(request.state)); }

Answer MailAccount(Request& request) {
  const bool has_root = request.state.HasRoot();
  return request.AnswerText(has_root ? AccountOf(request.state, request.state.root())
                                     : FirstAccount(request.state));
}

Answer AccountGroup(Request& request) {
  return request.AnswerText(
      request.state.commands.accounts.Value(AccountOf(request.state, request.state.root()), "group"));
}

constexpr Service kServices[] = {
    {5, nullptr, ListAccount, "the first account; \"local\" when there is none"},
    {6, nullptr, MailAccount,
     "the account that the open mail is addressed to (To, Cc, Delivered-To), else the first"},
    {18, nullptr, SelectPane, "0 folders, 1 mail list, 2 mail"},
    {30, nullptr, Count, "mails that the list shows"},
    {31, nullptr, CountAll, "mails of the folder, shown or not"},
    {32, nullptr, WithRoot<Index>, "place of the open mail in the list, from 0; -1 when it does not show"},
    {33, nullptr, SetIndex, "opens another mail of the list: 1 when there is one"},
    {89, nullptr, SelectedPane, "the pane selected last, 0 at first"},
    {95, nullptr, WithRoot<Colour>,
     "colour of the open mail, 0 at first, [kept](#marks) when the program ends"},
    {96, nullptr, WithRoot<SetColour>, "sets it"},
    {97, "II", WithCurrent<SetState>,
     "changes bits of the current mail's state word, which are [kept](#marks) when the program ends: new "
     "bits, mask"},
    {131, nullptr, WithRoot<LockSelection>,
     "keeps the selected mails: for `EnumSelection`, and for `Export`"},
    {132, nullptr, UnlockSelection, "ends that"},
    {133, nullptr, EnumSelection, "opens a mail of those locked: 1 when there is one"},
    {149, nullptr, WithRoot<SelectedCount>,
     "number of selected mails: the open one, all of the list, or those found; a folded mail counts with its "
     "answers"},
    {159, nullptr, WithRoot<AccountGroup>, "the line `group = ...` of the open mail's account"},
    {191, nullptr, WithRoot<SelectAll>, "selects the mails that the list shows, until one is opened"},
    {225, nullptr, SelectedPane, "the pane selected last, 0 at first"},
    {245, nullptr, WithRoot<SelectAllInPane>,
     "in the mail list as `SelectAllMail`; in the mail its text, which `SelectedRootText` then gives; 0 in "
     "the pane of folders"},
    {311, "I", WithCurrent<SetFolding>, "turns the current mail's folding on or off"},
};

constexpr Command kCommands[] = {
    {40028, WithRoot<Move<1, true>>, "opens the next unread mail of the list: 1 when there is one"},
    {40029, WithRoot<Move<-1, true>>, "the previous one"},
    {40031, WithRoot<Move<1, false>>, "opens the next mail of the list"},
    {40032, WithRoot<Move<-1, false>>, "the previous one"},
    {40033, WithRoot<Switch<kStateUnread>>, "makes the open mail read or unread"},
    {40079, WithRoot<Switch<kStateMarked>>, "sets or clears its mark"},
    {40090, WithCurrent<SwitchFolding>, "turns the current mail's folding on or off"},
    {40430, ClearAllUnread, "makes the mails of the list read"},
};

}  // namespace

const ServiceFamily kMailListServices = {kServices, kCommands};

}  // namespace wrenfold
