// Next and previous mails of a kind, over the end of a folder too; pages; the list that follows the open
// mail; the log.
#include <algorithm>

#include "host/charset/charsets.h"
#include "host/mail/headers.h"
#include "host/mail/list_walk.h"
#include "host/mail/mail_store.h"
#include "host/requests/request_server_win.h"
#include "host/requests/shown_list.h"
#include "host/services/list_moves_win.h"
#include "host/services/services_win.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"
#include "host/windows/list_window_win.h"

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
  return request.Fail("no such mail on the way");
}

// --- Pages of the open mail ---

constexpr std::size_t kPageLines = 20;

// Shows the next page, or the one before: false at that end of the mail.
bool TurnPage(Request& request, bool forwards) {
  HostState& state = request.state;
  const std::string_view body = SplitMail(state.Message(state.root()).text).body;
  const auto lines = static_cast<std::size_t>(std::count(body.begin(), body.end(), '\n')) +
                     (body.empty() || body.ends_with('\n') ? 0 : 1);
  std::size_t& first = state.view.first_line;
  if (forwards ? first + kPageLines >= lines : first == 0) return false;
  first = forwards ? first + kPageLines : first - std::min(first, kPageLines);
  return true;
}

Answer NextPage(Request& request) {
  return TurnPage(request, true) ? Request::Done(true) : request.Fail("this is the mail's last page");
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

// --- The list follows the open mail, and goes back ---

// Shows the open mail in its list, whatever hid it.
Answer Sync(Request& request) {
  HostState& state = request.state;
  state.list.before_sync = {state.list.area, state.list.found_only, state.root(),
                            static_cast<std::size_t>(TitleListTop(state))};
  if (!PlaceIn(ShownMails(state, state.folder()), state.root())) {
    state.list.area = ViewArea::kAll;
    state.list.found_only = false;
    state.list.turned.clear();
    if (state.list.threads == ThreadView::kFolded) state.list.threads = ThreadView::kOn;
    RemakeLists(state);
  }
  const auto place = PlaceIn(ShownMails(state, state.folder()), state.root());
  if (!place) return request.Fail("the open mail is in no list");
  const auto top = static_cast<std::size_t>(TitleListTop(state));
  if (*place < top || *place >= top + kTitleListLines) ScrollTitleList(state, *place);
  return Request::Done(true);
}

Answer BackSync(Request& request) {
  HostState& state = request.state;
  if (!state.list.before_sync) return request.Fail("nothing was shown with Sync");
  const ListView::Place before = *state.list.before_sync;
  state.list.before_sync.reset();
  state.list.area = before.area;
  state.list.found_only = before.found_only;
  RemakeLists(state);
  state.Open(before.mail);
  ScrollTitleList(state, before.top);
  return Request::Done(true);
}

Answer SyncFound(Request& request) {
  const std::vector<std::size_t>& found = request.state.commands.found;
  if (!PlaceIn(found, request.state.root())) return request.Fail("the open mail is none that a search found");
  return Sync(request);
}

// --- History, header view ---

Answer PushHistory(Request& request) {
  std::vector<std::size_t>& history = request.state.list.history;
  if (history.empty() || history.back() != request.state.root()) history.push_back(request.state.root());
  return Request::AnswerNumber(static_cast<Slot>(history.size()));
}

Answer HeaderView(Request& request) { return Request::AnswerNumber(request.state.view.header_view); }

template <int kView>
Answer SetHeaderView(Request& request) {
  request.state.view.header_view = kView;
  return Request::Done(true);
}

// --- The log: what the file holds of the open mail ---

void ShowLog(const char* title, std::string_view utf8) {
  TheTerminal().Error(std::string(title) + ":\n" + Printable(utf8) + "\n");
}

Answer Log(Request& request) {
  const StoredMail& mail = request.state.Mail(request.state.root());
  ShowLog("log", PathToUtf8(mail.source.filename()) + " at byte " + std::to_string(mail.offset) + ", " +
                     std::to_string(mail.raw.size()) + " bytes");
  return Request::AnswerNumber(1);
}

// As it came; bytes that are not ASCII are read as host text.
Answer DirectLog(Request& request) {
  const std::string& raw = request.state.Mail(request.state.root()).raw;
  ShowLog("log, direct", SystemCharsets().HostToUtf8(raw));
  return Request::AnswerNumber(1);
}

Answer DecodedLog(Request& request) {
  const std::string& text = request.state.Message(request.state.root()).text;
  ShowLog("log, decoded", SystemCharsets().HostToUtf8(text));
  return Request::AnswerNumber(1);
}

constexpr Service kServices[] = {
    {40, nullptr, HeaderView, "number of the header view, 0 at first"},
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
    {40044, SetHeaderView<0>, "the usual headers"},
    {40045, SetHeaderView<1>, "all headers"},
    {40046, SetHeaderView<2>, "no headers"},
    {40095, WithRoot<Sync>,
     "shows the open mail in the list, for which the view area becomes 0 and threads unfold when they hide "
     "it"},
    {40096, WithRoot<BackSync>, "back to the view area, the place in the list and the mail before `Sync`"},
    {40100, WithRoot<Log>, "file, place and size of the open mail, on standard error"},
    {40202, WithRoot<SyncFound>, "as `Sync`, for a mail that a search found"},
    {40308, WithRoot<DirectLog>, "its bytes as they came, on standard error"},
    {40309, WithRoot<DecodedLog>, "its host text, on standard error"},
};

}  // namespace

const ServiceFamily kNavigationServices = {kServices, kCommands};

}  // namespace wrenfold
