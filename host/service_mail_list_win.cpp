// The list of mails: how many there are, which is open, moving between them, and their marks. The mails are
// listed in the order in which they were read; the open one is the root mail and the current one.
#include "request_server_win.h"

namespace wrenfold {
namespace {

Answer Count(Request& request) {
  return Request::AnswerNumber(static_cast<Slot>(request.state.mail_count()));
}
Answer Index(Request& request) { return Request::AnswerNumber(static_cast<Slot>(request.state.root())); }

// 1 when the mail was opened, 0 when there is none at that place.
Answer Opened(Request& request, std::size_t index) {
  return Request::AnswerNumber(request.state.Open(index) ? 1 : 0);
}

Answer SetIndex(Request& request) {
  const Slot index = request.Number(0);
  return index < 0 ? Answer{} : Opened(request, static_cast<std::size_t>(index));
}

bool IsUnread(Request& request, std::size_t index) {
  return (request.state.StateWord(index) & kStateUnread) != 0;
}

Answer Next(Request& request) { return Opened(request, request.state.root() + 1); }
Answer Previous(Request& request) {
  return request.state.root() == 0 ? Answer{} : Opened(request, request.state.root() - 1);
}

Answer NextUnread(Request& request) {
  for (std::size_t i = request.state.root() + 1; i < request.state.mail_count(); ++i) {
    if (IsUnread(request, i)) return Opened(request, i);
  }
  return {};
}

Answer PreviousUnread(Request& request) {
  for (std::size_t i = request.state.root(); i-- > 0;) {
    if (IsUnread(request, i)) return Opened(request, i);
  }
  return {};
}

// --- Marks of the open mail ---

template <std::uint32_t kBit>
Answer Switch(Request& request) {
  if (!request.state.HasRoot()) return {};
  const std::size_t root = request.state.root();
  request.state.ChangeState(root, ~request.state.StateWord(root), kBit);
  return Request::AnswerNumber(1);
}

Answer ClearAllUnread(Request& request) {
  for (std::size_t i = 0; i < request.state.mail_count(); ++i) request.state.ChangeState(i, 0, kStateUnread);
  return Request::AnswerNumber(1);
}

// bits, mask
Answer SetState(Request& request) {
  if (!request.state.HasRoot()) return {};
  request.state.ChangeState(request.state.root(), static_cast<std::uint32_t>(request.Number(0)),
                            static_cast<std::uint32_t>(request.Number(1)));
  return Request::AnswerNumber(1);
}

Answer SetFolding(Request& request) {
  if (!request.state.HasRoot()) return {};
  const std::uint32_t changed = kStateNoFolding;
  request.state.ChangeState(request.state.root(), request.Number(0) != 0 ? 0 : changed, changed);
  return Request::AnswerNumber(1);
}

Answer Colour(Request& request) {
  if (!request.state.HasRoot()) return {};
  return Request::AnswerNumber(request.state.colour(request.state.root()));
}

Answer SetColour(Request& request) {
  if (!request.state.HasRoot()) return {};
  request.state.set_colour(request.state.root(), request.Number(0));
  return Request::AnswerNumber(1);
}

constexpr Service kServices[] = {
    {30, nullptr, Count},  {31, nullptr, Count},     {32, nullptr, Index}, {33, nullptr, SetIndex},
    {95, nullptr, Colour}, {96, nullptr, SetColour}, {97, "II", SetState}, {311, "I", SetFolding},
};

constexpr Command kCommands[] = {
    {40028, NextUnread},
    {40029, PreviousUnread},
    {40031, Next},
    {40032, Previous},
    {40033, Switch<kStateUnread>},
    {40079, Switch<kStateMarked>},
    {40090, Switch<kStateNoFolding>},
    {40430, ClearAllUnread},
};

const ServiceFamily kFamily(kServices, kCommands);

}  // namespace
}  // namespace wrenfold
