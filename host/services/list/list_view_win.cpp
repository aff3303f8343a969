// How the mail list shows its mails: order, threads, view area, drawing, the lines on the screen,
// the calendar.
#include <algorithm>
#include <limits>

#include "host/list/mail_order.h"
#include "host/mail/missing_mail.h"
#include "host/requests/request_server_win.h"
#include "host/requests/shown_list.h"
#include "host/services/services_win.h"
#include "host/shared/folder_lookup_win.h"
#include "host/windows/list_window_win.h"
#include "src/dates/date_format.h"
#include "src/dates/date_parse.h"

namespace wrenfold {
namespace {

// After a change to how mails are listed.
Answer Relist(Request& request) {
  RemakeLists(request.state);
  DrawTitleList(request.state);
  return Request::Done(true);
}

// What a switch was before, for the macro that turns it back.
template <bool ListView::*kSwitch>
Answer Switch(Request& request) {
  const bool before = request.state.list.*kSwitch;
  request.state.list.*kSwitch = request.Number(0) != 0;
  return Request::AnswerNumber(before ? 1 : 0);
}

// --- Order, threads, area ---

Answer SetSort(Request& request) {
  if (!SortMethodOf(request.Number(0))) {
    return request.Fail("no sort method " + std::to_string(request.Number(0)) +
                        ": 0 to 9, or 100 to 109 backwards");
  }
  request.state.list.sort = request.Number(0);
  return Relist(request);
}

Answer Sort(Request& request) { return Request::AnswerNumber(request.state.list.sort); }

Answer SetThreads(Request& request) {
  ListView& list = request.state.list;
  const Slot view = request.Number(0);
  const bool folded = view == static_cast<Slot>(ThreadView::kFolded);
  list.threads = view == 0 ? ThreadView::kOff : folded ? ThreadView::kFolded : ThreadView::kOn;
  list.turned.clear();
  return Relist(request);
}

Answer Threads(Request& request) { return Request::Done(request.state.list.threads != ThreadView::kOff); }

Answer SetArea(Request& request) {
  const Slot area = request.Number(0);
  if (area < 0 || area > kLastViewArea)
    return request.Fail("no view area " + std::to_string(area) + ": 0 to 6");
  request.state.list.area = static_cast<ViewArea>(area);
  return Relist(request);
}

Answer Area(Request& request) { return Request::AnswerNumber(static_cast<Slot>(request.state.list.area)); }

Answer SetFoundOnly(Request& request) {
  request.state.list.found_only = request.Number(0) != 0;
  return Relist(request);
}

Answer Finder(Request& request) {
  return request.AnswerText(request.state.list.found_only ? request.state.commands.find_pack : "");
}

// --- Threads ---

template <std::size_t ThreadLine::*kMember>
Answer OfLine(Request& request) {
  const Slot place = request.Number(0);
  const ThreadLine* line = LineAt(request.state, static_cast<std::size_t>(place));
  if (line == nullptr) return request.Fail(kNotInList + std::to_string(place));
  return Request::AnswerNumber(static_cast<Slot>(line->*kMember));
}

Answer IsFolded(Request& request) {
  const Slot place = request.Number(0);
  const ThreadLine* line = LineAt(request.state, static_cast<std::size_t>(place));
  if (line == nullptr) return request.Fail(kNotInList + std::to_string(place));
  return Request::Done(line->children > 0 && request.state.list.IsFolded(line->mail));
}

// The argument switches the operations on threads off.
Answer SwitchThreadOperation(Request& request) {
  const bool before = !request.state.list.whole_threads;
  request.state.list.whole_threads = request.Number(0) == 0;
  return Request::AnswerNumber(before ? 1 : 0);
}

// --- Making and drawing ---

Answer Remake(Request& request) {
  const auto folder = FolderOfPair(request, 0);
  if (!folder) return NoFolder(request);
  RemakeList(request.state, *folder);
  DrawTitleList(request.state);
  return Request::Done(true);
}

Answer Redraw(Request& request) {
  DrawTitleList(request.state);
  return Request::Done(true);
}

enum DrawStep : Slot { kStop = 0, kGoOn = 1, kAllow = 2 };

Answer SwitchDraw(Request& request) {
  switch (request.Number(0)) {
    case kStop:
      request.state.list.draws = false;
      return Request::Done(true);
    case kGoOn:
      request.state.list.draws = true;
      return Redraw(request);
    case kAllow:
      request.state.list.draws = true;
      return Request::Done(true);
    default:
      return request.Fail("no way of drawing " + std::to_string(request.Number(0)) + ": 0 to 2");
  }
}

// --- The list on the screen ---

Answer SetTop(Request& request) {
  const Slot line = request.Number(0);
  if (ScrollTitleList(request.state, static_cast<std::size_t>(line))) return Request::Done(true);
  return request.Fail("the list has no line " + std::to_string(line));
}

Answer Top(Request& request) { return Request::AnswerNumber(TitleListTop(request.state)); }

enum ListQuestion : Slot { kHeight = 0, kWindow = 1 };

Answer ListWindow(Request& request) {
  switch (request.Number(0)) {
    case kHeight:
      return Request::AnswerNumber(kTitleListLines);
    case kWindow:
      return Request::AnswerNumber(reinterpret_cast<Slot>(TitleList(request.state)));
    default:
      return request.Fail("no question " + std::to_string(request.Number(0)) + " about the list: 0 or 1");
  }
}

Answer CachedLine(Request& request) {
  HostState& state = request.state;
  const auto& lines = ListOf(state, state.folder()).lines;
  const auto line = std::ranges::find(lines, state.root(), &ThreadLine::mail);
  return request.AnswerText(ListLineText(state, state.root(), line == lines.end() ? 0 : line->level));
}

// --- Calendar ---

struct Days {
  std::int64_t first = std::numeric_limits<std::int64_t>::max();
  std::int64_t last = -1;
};

// The days that the calendar marks: those of the selected mails, on their senders' clocks.
Days CalendarDays(HostState& state) {
  Days days;
  if (!state.HasRoot()) return days;
  for (const std::size_t mail : SelectedMails(state)) {
    const auto date = wfinfo::ReadHeaderDate(state.Header(mail, "Date"));
    if (!date) continue;
    days.first = std::min(days.first, date->wall_clock / wfinfo::kTicksPerDay);
    days.last = std::max(days.last, date->wall_clock / wfinfo::kTicksPerDay);
  }
  return days;
}

Answer Date(Request& request) {
  const Days days = CalendarDays(request.state);
  const auto time = days.last < 0 ? std::nullopt : wfinfo::CivilFromTicks(days.first * wfinfo::kTicksPerDay);
  if (!time) return request.AnswerText("");
  char text[16];
  return request.AnswerText({text, wfinfo::FormatDateText("YYYY/MM/DD", *time, text, sizeof text)});
}

Answer DayCount(Request& request) {
  const Days days = CalendarDays(request.state);
  return Request::AnswerNumber(days.last < 0 ? 0 : days.last - days.first + 1);
}

constexpr Service kServices[] = {
    {24, nullptr, SetThreads, "0 no threads, 2 threads folded to their first mails, else threads unfolded"},
    {25, nullptr, Threads, "1 while the list shows threads"},
    {26, nullptr, Sort, "the number set, 0 at first"},
    {27, nullptr, SetSort,
     "0 as read, 1 date, 2 subject, 3 sender, 4 recipient, 5 size, 6 unread first, 7 marked first, 8 colour, "
     "9 attachments first; 100 more turns the order round"},
    {28, nullptr, Area, "the number set, 0 at first"},
    {29, nullptr, SetArea,
     "0 all, 1 unread, 2 marked, 3 with attachments, 4 of high priority, 5 hot, 6 not answered; a mail that "
     "changes stays in the list until that is made anew"},
    {38, nullptr, SwitchDraw,
     "0 leaves the lines of the list window as they are, 1 draws them, 2 lets the next change draw"},
    {54, nullptr, Remake, "makes the list of a folder anew from what its mails are at present"},
    {68, nullptr, Redraw, "writes the lines of the list window anew"},
    {173, nullptr, SetFoundOnly, "limits the list to the mails of the last search"},
    {185, nullptr, WithRoot<SetTop>,
     "scrolls the list window, at most until its last line shows; 0 when there is no such line"},
    {186, nullptr, WithRoot<Top>, "its first line that shows"},
    {187, nullptr, ListWindow,
     "8 lines; the list window, a hidden list box whose arrow keys fold the open mail's thread"},
    {206, nullptr, Finder, "the find pack while the list is limited to what it found, else \"\""},
    {213, nullptr, OfLine<&ThreadLine::level>,
     "0 for a mail that answers none of the folder, 1 for its answers"},
    {214, nullptr, IsFolded, "1 when its answers are hidden"},
    {215, nullptr, OfLine<&ThreadLine::children>, "its direct answers in the folder, while threads show"},
    {224, nullptr, Switch<&ListView::speaks>,
     "writes the line of each mail that is opened in the list on standard error, as `speech:`; answers what "
     "it was before"},
    {226, nullptr, Date, "day of the earliest selected mail, `2025/03/03`"},
    {227, nullptr, DayCount, "days from there to that of the latest selected mail"},
    {247, nullptr, SwitchThreadOperation,
     "not 0: a folded mail is selected without its hidden answers; answers what it was before"},
    {300, nullptr, Switch<&ListView::highlights_found>,
     "marks found mails with F in the lines of the list; answers what it was before"},
    {331, nullptr, WithRoot<CachedLine>,
     "the open mail's line: marks, date, sender, subject and bytes between tabs; marks are U unread, M "
     "marked, A attachments, F found"},
};

constexpr Command kCommands[] = {
    {40365, Redraw, "as code 68: what a macro in another window changed shows in the list window"},
};

}  // namespace

const ServiceFamily kListViewServices = {kServices, kCommands};

}  // namespace wrenfold
