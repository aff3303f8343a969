// Searching mails: find packs, windows with search results that open and close as a macro asks, and counters
// of folders. What was found is selected, so that macros walk through it as through any selection.
#include <windows.h>

#include <algorithm>
#include <iterator>
#include <optional>

#include "host/mail/find_pack.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/folder_lookup_win.h"
#include "host/shared/list_moves_win.h"
#include "host/terminal/progress.h"
#include "host/windows/frame_win.h"

namespace wrenfold {
namespace {

enum GrepQuestion : Slot { kWhichWindow = 0, kIsBrowseMode = 1 };

Answer GrepWindow(Request& request) {
  if (request.Number(0) != kWhichWindow) return {};
  return Request::AnswerNumber(reinterpret_cast<Slot>(Windows::GrepWindow()));
}

constexpr Slot kAllFolders = 1;  // flag

bool InAllFolders(const Request& request) { return (request.Number(2) & kAllFolders) != 0; }

// folder pair, flags, option. Adds the mails that the find pack finds in a folder, or in all, to those
// found, in the order of the folders.
void FindMails(Request& request, std::size_t folder) {
  HostState& state = request.state;
  std::vector<std::size_t>& found = state.commands.found;
  const bool all = InAllFolders(request);
  Progress progress("searching mails");
  for (std::size_t i = 0; i < state.folders().size(); ++i) {
    if (!all && folder != i) continue;
    for (const std::size_t mail : state.MailsOf(i)) {
      progress.Step();
      const bool is_new = std::find(found.begin(), found.end(), mail) == found.end();
      if (is_new && Finds(state.commands.find_pack, state.Message(mail).text)) found.push_back(mail);
    }
  }
  state.selection.Select(found);
}

// The folder to search; any where all are searched, or none is there and none is named.
std::optional<std::size_t> ToSearch(Request& request) {
  const bool none = request.state.folders().empty() && NameOfPair(request, 0).empty();
  return none || InAllFolders(request) ? std::optional<std::size_t>(0) : FolderOfPair(request, 0);
}

Answer Search(Request& request) {
  const auto folder = ToSearch(request);
  if (!folder) return NoFolder(request);
  request.state.commands.found.clear();
  FindMails(request, *folder);
  return Request::AnswerNumber(Windows::OpenGrepWindow() ? 1 : 0);
}

Answer AddToSearch(Request& request) {
  const auto folder = ToSearch(request);
  if (!folder) return NoFolder(request);
  FindMails(request, *folder);
  const bool open = Windows::GrepWindow() != nullptr || Windows::OpenGrepWindow();
  return Request::AnswerNumber(open ? 1 : 0);
}

// The search goes on until the host's messages have been handled once.
Answer StartSearch(Request& request) {
  const Answer answer = Search(request);
  if (answer.value != 0) Windows::BeginSearch();
  return answer;
}

Answer StartAddToSearch(Request& request) {
  const Answer answer = AddToSearch(request);
  if (answer.value != 0) Windows::BeginSearch();
  return answer;
}

Answer IsSearching(Request&) { return Request::AnswerNumber(Windows::IsSearching() ? 1 : 0); }

Answer StopSearch(Request&) {
  const bool searching = Windows::IsSearching();
  Windows::EndSearch();
  return Request::AnswerNumber(searching ? 1 : 0);
}

// The frame has raised the window already.
Answer GrepRaised(Request&) { return Request::AnswerNumber(Windows::GrepWindow() != nullptr ? 1 : 0); }

// --- Find packs ---

// 0 for the present pack, n for the one pushed n pushes ago; a second number is not looked at.
Answer FindPack(Request& request) {
  const std::vector<std::string>& pushed = request.state.commands.pushed_find_packs;
  const auto back = static_cast<std::size_t>(request.Number(0));
  if (back == 0) return request.AnswerText(request.state.commands.find_pack);
  return request.AnswerText(back <= pushed.size() ? pushed[pushed.size() - back] : "");
}

Answer SetFindPack(Request& request) {
  const std::string_view line = NoPlaceOf(request.Text(0));
  if (!line.empty()) return request.Fail(WhyNoPlace(line));
  request.state.commands.find_pack = request.Text(0);
  return Request::AnswerNumber(1);
}

Answer PushFindPack(Request& request) {
  request.state.commands.pushed_find_packs.push_back(request.state.commands.find_pack);
  return Request::AnswerNumber(1);
}

// Opens the nearest mail of the list that the find pack finds.
template <bool kForwards, bool kInclude>
Answer Find(Request& request) {
  HostState& state = request.state;
  const auto finds = [&](std::size_t mail) {
    return Finds(state.commands.find_pack, state.Message(mail).text);
  };
  if (kInclude && finds(state.root())) return Request::Done(true);
  return MoveInList(request, kForwards, finds) ? Request::Done(true)
                                               : request.None("the find pack finds no mail on the way");
}

// --- Counters of a folder ---

constexpr Slot kRecent = 1;  // unread, and not in the list before

// State bits by the number of the counter; 0 for those that are none.
constexpr std::uint32_t kCounted[] = {0,        kStateUnread, kStateUnread, kStateMarked, kStateHighPriority,
                                      kStateHot};

// folder pair, counter
Answer CountMails(Request& request) {
  const auto folder = FolderOfPair(request, 0);
  const Slot counter = request.Number(2);
  if (!folder || counter < 0 || counter >= static_cast<Slot>(std::size(kCounted))) return {};
  const std::uint32_t bit = kCounted[counter];
  const std::vector<std::size_t> list = request.state.MailsOf(*folder);
  const auto count = std::count_if(list.begin(), list.end(), [&](std::size_t mail) {
    const bool old = counter == kRecent && (request.state.Mail(mail).flags & kMailOld) != 0;
    return !old && (bit == 0 || (request.state.StateWord(mail) & bit) != 0);
  });
  return Request::AnswerNumber(count);
}

constexpr Service kServices[] = {
    {81, "II", FindPack, "the [find pack](#find-packs); with a number n in front the one of n pushes ago"},
    {82, "T", SetFindPack, "sets the [find pack](#find-packs): 1, 0 for a place that is no header's name"},
    {85, "", PushFindPack, "keeps the [find pack](#find-packs), to be asked for later: 1"},
    {139, "TTI", CountMails,
     "mails of the folder by kind; \"recent\" are the unread ones without `O` in `Status`"},
    {83, "TTII", Search,
     "looks for the find pack in the folder (flag 1: in all folders) and opens a result window: 1. The mails "
     "found are selected: `LockSelection`, `EnumSelection` and `SelectedMailCount` walk through them, "
     "`NextPrevCustom` with \"findflag\" moves between them"},
    {129, nullptr, GrepWindow, "the result window opened last, 0 without one"},
    {199, "TTII", StartSearch,
     "the same as 83; the search lasts until the messages that it left have been handled"},
    {217, "TTII", AddToSearch, "the same as 83, added to those found before"},
    {218, "TTII", StartAddToSearch, "the same as 199, added to those found before"},
    {256, nullptr, IsSearching, "1 until the messages that a search left have been handled"},
    {257, nullptr, StopSearch, "ends the search: 1 when there was one"},
    {264, nullptr, GrepRaised, "1 once the frame has brought the result window to the top, 0 without one"},
};

constexpr Command kCommands[] = {
    {40014, WithRoot<Find<false, false>>,
     "opens the nearest mail of the list, before the open one, that the find pack finds"},
    {40015, WithRoot<Find<true, false>>,
     "opens the nearest mail of the list, behind the open one, that the find pack finds"},
    {40180, WithRoot<Find<false, true>>, "as 40014, the open mail included"},
    {40181, WithRoot<Find<true, true>>, "as 40015, the open mail included"},
};

}  // namespace

const ServiceFamily kGrepServices = {kServices, kCommands};

}  // namespace wrenfold
