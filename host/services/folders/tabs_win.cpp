// Tabs, of which each tree of folders has one; bookmarks.
#include <filesystem>

#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

// Sub-commands of code 248.
enum TabCommand : Slot {
  kCount,
  kCurrent,
  kGetFlags,
  kSetFlags,
  kGetTitle,
  kSetTitle,
  kGetIcon,
  kSetIcon,
  kClose,
  kSelect
};

// Makes the tabs when they are first asked for; the current one follows the folder that is shown.
FolderState& WithTabs(HostState& state) {
  FolderState& kept = state.folder_state();
  if (kept.tabs.empty()) {
    for (std::size_t tree = 0; tree < state.trees().size(); ++tree) {
      for (std::size_t i = 0; i < state.folders().size(); ++i) {
        if (state.folders()[i].tree != tree || state.folders()[i].removed) continue;
        const auto top = std::filesystem::absolute(state.trees()[tree].root).lexically_normal().filename();
        kept.tabs.push_back({SystemCharsets().Utf8ToHost(PathToUtf8(top)), 0, 0, i});
        break;
      }
    }
    const std::size_t tree = state.folders().empty() ? 0 : state.folders()[state.folder()].tree;
    while (kept.tab + 1 < kept.tabs.size() && state.folders()[kept.tabs[kept.tab].folder].tree != tree)
      ++kept.tab;
  }
  if (kept.tab < kept.tabs.size()) kept.tabs[kept.tab].folder = state.folder();
  return kept;
}

void Show(HostState& state, std::size_t folder) {
  if (!state.folders()[folder].removed && folder != state.folder()) state.ShowFolder(folder);
}

Answer Close(Request& request, FolderState& kept, std::size_t tab) {
  if (kept.tabs.size() == 1) return request.Fail("the last tab stays");
  kept.tabs.erase(kept.tabs.begin() + static_cast<std::ptrdiff_t>(tab));
  if (kept.tab > tab || kept.tab == kept.tabs.size()) --kept.tab;
  Show(request.state, kept.tabs[kept.tab].folder);
  return Request::Done(true);
}

Answer WithTab(Request& request, FolderState& kept, std::size_t number) {
  FolderTab& tab = kept.tabs[number];
  switch (request.Number(0)) {
    case kGetFlags:
      return Request::AnswerNumber(tab.flags);
    case kSetFlags:
      return tab.flags = request.Number(2), Request::Done(true);
    case kGetTitle:
      return request.AnswerText(tab.title);
    case kSetTitle:
      if (!request.HasText(2)) return request.Fail("the title is no text");
      return tab.title = request.Text(2), Request::Done(true);
    case kGetIcon:
      return Request::AnswerNumber(tab.icon);
    case kSetIcon:
      return tab.icon = request.Number(2), Request::Done(true);
    case kClose:
      return Close(request, kept, number);
    case kSelect:
      kept.tab = number;
      Show(request.state, tab.folder);
      return Request::Done(true);
    default:
      return request.Fail("no such form of code 248");
  }
}

// sub-command, tab, value
Answer Tabs(Request& request) {
  FolderState& kept = WithTabs(request.state);
  if (request.Number(0) == kCount) return Request::AnswerNumber(static_cast<Slot>(kept.tabs.size()));
  if (request.Number(0) == kCurrent) return Request::AnswerNumber(static_cast<Slot>(kept.tab));
  const auto tab = static_cast<std::size_t>(request.Number(1));
  if (tab >= kept.tabs.size())
    return request.NoNumber(request.Number(1), "no tab " + std::to_string(request.Number(1)));
  return WithTab(request, kept, tab);
}

// --- Bookmarks ---

Answer AddBookmark(Request& request) {
  request.state.folder_state().bookmarks.insert(request.state.root());
  return Request::Done(true);
}

Answer DeleteBookmark(Request& request) {
  const bool was = request.state.folder_state().bookmarks.erase(request.state.root()) > 0;
  return was ? Request::Done(true) : request.None("the open mail has no bookmark");
}

Answer IsBookmarked(Request& request) {
  return Request::Done(request.state.folder_state().bookmarks.contains(request.state.root()));
}

constexpr Service kServices[] = {
    {248, nullptr, Tabs,
     "each `--mail` has a tab with the name of its folder and shows the folder that was open in it; titles, "
     "icons, flags and closed tabs last while the program runs; the last tab is not closed"},
    {286, nullptr, WithRoot<AddBookmark>, "bookmarks the root mail, [for good](#marks)"},
    {287, nullptr, WithRoot<DeleteBookmark>, "1 when the root mail had a bookmark"},
    {288, nullptr, WithRoot<IsBookmarked>, "1 when the root mail has a bookmark"},
};

}  // namespace

const ServiceFamily kTabsServices = {kServices, {}};

}  // namespace wrenfold
