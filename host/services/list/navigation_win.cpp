// Next and previous mails of a kind, over the end of a folder too; pages of the open mail; the history.
#include <algorithm>

#include "host/list/list_walk.h"
#include "host/mail/headers.h"
#include "host/requests/request_server_win.h"
#include "host/requests/shown_list.h"
#include "host/services/services_win.h"
#include "host/shared/list_moves_win.h"

namespace wrenfold {
namespace {

// Numbers of the targets in code 91.
constexpr Slot kUnread = 1;
constexpr Slot kMarked = 2;
constexpr Slot kFound = 3;

bool IsTarget(Request& request, Slot target, std::size_t mail) {
  const std::vector<std::size_t>& found = request.state.commands.found;
  if (target == kUnread) return (request.state.StateWord(mail) & kStateUnread) != 0;
  if (target == kMarked) return (request.state.StateWord(mail) & kStateMarked) != 0;
  return target != kFound || std::find(found.begin(), found.end(), mail) != found.end();
}

// Opens the nearest mail of a kind: 1, or 0 when there is none on the way.
Answer Go(Request& request, Slot target, bool forwards, Slot roll) {
  HostState& state = request.state;
  const std::size_t here = state.folder();
  // The open mail is the place to begin at also when it does not show in its list.
  std::vector<std::vector<std::size_t>> folders(state.folders().size());
  const std::vector<std::size_t> shown = ShownMails(state, here);
  folders[here] = OrderedMails(state, here);
  const auto place = PlaceIn(folders[here], state.root());
  if (!place) return request.Fail("the open mail is in no list");
  for (std::size_t i = 0; roll != 0 && i < folders.size(); ++i) {
    if (i != here) folders[i] = ShownMails(state, i);
  }
  for (const std::size_t mail : MailsOnTheWay(folders, {here, *place}, forwards, static_cast<Roll>(roll))) {
    if (PlaceIn(folders[here], mail) && !PlaceIn(shown, mail)) continue;
    if (IsTarget(request, target, mail)) return OpenInList(request, mail);
  }
  return request.None("no such mail on the way");
}

// --- Pages of the open mail ---

constexpr std::size_t kPageLines = 20;

// Shows the next page, or the one before: false at that end of the mail.
bool TurnPage(Request& request, bool forwards) {
  HostState& state = request.state;
  const std::string_view body = SplitMail(state.RootText()).body;
  const auto lines = static_cast<std::size_t>(std::count(body.begin(), body.end(), '\n')) +
                     (body.empty() || body.ends_with('\n') ? 0 : 1);
  std::size_t& first = state.view.first_line;
  if (forwards ? first + kPageLines >= lines : first == 0) return false;
  first = forwards ? first + kPageLines : first - std::min(first, kPageLines);
  return true;
}

Answer NextPage(Request& request) {
  return TurnPage(request, true) ? Request::Done(true) : request.None("this is the mail's last page");
}

template <bool kForwards>
Answer PageOrUnread(Request& request) {
  return TurnPage(request, kForwards) ? Request::Done(true) : Go(request, kUnread, kForwards, 0);
}

// --- Next and previous ---

// target, direction (0 down, 1 up, 2 next, 3 previous: an even one goes forwards), unit (1: pages first),
// roll, option, which is not looked at.
Answer NextPrev(Request& request) {
  constexpr Slot kPage = 1;
  const bool forwards = request.Number(1) % 2 == 0;
  if (request.Number(2) == kPage && TurnPage(request, forwards)) return Request::Done(true);
  return Go(request, request.Number(0), forwards, request.Number(3));
}

template <bool kForwards>
Answer ToUnread(Request& request) {
  return Go(request, kUnread, kForwards, request.Number(0));
}

// --- History ---

Answer PushHistory(Request& request) {
  std::vector<std::size_t>& history = request.state.list.history;
  if (history.empty() || history.back() != request.state.root()) history.push_back(request.state.root());
  return Request::AnswerNumber(static_cast<Slot>(history.size()));
}

constexpr Service kServices[] = {
    {60, nullptr, WithRoot<NextPage>, "goes on by a page of 20 lines; 0 on the last page"},
    {61, "I", WithRoot<ToUnread<true>>, "1 when there is one on the [way](#moving-over-the-end-of-a-folder)"},
    {62, "I", WithRoot<ToUnread<false>>,
     "1 when there is one on the [way](#moving-over-the-end-of-a-folder)"},
    {91, "IIIII", WithRoot<NextPrev>,
     "as 61; \"Page\" turns pages of 20 lines first; \"findflag\" means the mails of the last search"},
    {314, nullptr, WithRoot<PushHistory>,
     "the number of mails in the history; the same mail is not added twice running"},
};

constexpr Command kCommands[] = {
    {40042, WithRoot<PageOrUnread<true>>, "the next page, or at the end of the mail the next unread one"},
    {40043, WithRoot<PageOrUnread<false>>,
     "the page before, or at the start of the mail the previous unread one"},
};

}  // namespace

const ServiceFamily kNavigationServices = {kServices, kCommands};

}  // namespace wrenfold
