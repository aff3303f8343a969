// The window search itself, with every mode and code.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "src/bridge/host_window_win.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

// Compiled here once more, as no export reaches every code: with reports that are only counted.
namespace wfinfo {
namespace {
int g_reports = 0;
}
void ReportError(const char*) { ++g_reports; }
}  // namespace wfinfo
#include "src/bridge/host_window_win.cpp"

namespace wfinfo_test {
namespace {

using wfinfo::FindHostWindow;
using wfinfo::SearchMode;

TEST(WindowSearch, TheTenAllowedCodesAndNoOthersGoThroughWhileADialogShows) {
  ScriptedHost host;
  const HWND dialog = host.OpenDialog(host.frame(), true);
  BoxCloser closer;
  for (const unsigned code : {216u, 209u, 313u, 46u, 48u, 73u, 74u, 307u, 319u, 333u}) {
    EXPECT_EQ(FindHostWindow(SearchMode::kFrameTarget, false, code), host.frame()) << code;
    EXPECT_EQ(wfinfo::FindActiveFrame(code), host.frame()) << code;
  }
  EXPECT_TRUE(closer.boxes().empty());
  for (const unsigned code :
       {0u, 1u, 45u, 47u, 72u, 75u, 208u, 217u, 306u, 308u, 318u, 320u, 332u, 0x100u + 46u}) {
    EXPECT_EQ(FindHostWindow(SearchMode::kFrameTarget, false, code), nullptr) << code;
  }
  EXPECT_EQ(wfinfo::FindActiveFrame(1), nullptr);
  EXPECT_EQ(closer.boxes().size(), 15u);
  EXPECT_EQ(FindHostWindow(SearchMode::kFrameTarget, true, 0), dialog)
      << "with the popup wanted nothing is refused";
  EXPECT_EQ(closer.boxes().size(), 15u);
  EXPECT_EQ(wfinfo::g_reports, 0);
  EnableWindow(host.frame(), TRUE);
}

TEST(WindowSearch, ADisabledFrameWithoutAPopupRefusesNothing) {
  ScriptedHost host;
  SetActiveWindow(host.OpenWindow("STATIC"));
  EnableWindow(host.frame(), FALSE);
  EXPECT_EQ(FindHostWindow(SearchMode::kFrameTarget, false, 1), host.frame());
  EXPECT_EQ(wfinfo::FindActiveFrame(1), host.frame());
  EnableWindow(host.frame(), TRUE);
}

TEST(WindowSearch, TheModalTestIsOfTheRequestTargetThatTheEnumerationGives) {
  ScriptedHost host;
  const HWND target = host.OpenFrame();
  host.SetRequestTarget(target);
  host.OpenDialog(target, true);
  BoxCloser closer;
  EXPECT_EQ(FindHostWindow(SearchMode::kFrameTarget, false, 1), nullptr);
  EXPECT_EQ(closer.boxes().size(), 1u);
  host.SetRequestTarget(nullptr);
  EXPECT_EQ(FindHostWindow(SearchMode::kFrameTarget, false, 1), nullptr) << "no target: nothing to refuse";
  EXPECT_EQ(closer.boxes().size(), 1u);
  EnableWindow(target, TRUE);
}

TEST(WindowSearch, AnActiveFrameWithoutATargetEndsTheSearch) {
  ScriptedHost host;
  host.OpenHtmlViewer();
  SetActiveWindow(host.frame());
  host.SetRequestTarget(nullptr);
  EXPECT_EQ(FindHostWindow(SearchMode::kFrameTarget, false, 1), nullptr);
}

TEST(WindowSearch, AnyWindowOfTheThreadWillDoInTheThirdMode) {
  ScriptedHost host;
  const HWND stranger = host.OpenWindow("STATIC");
  SetActiveWindow(stranger);
  EXPECT_EQ(FindHostWindow(SearchMode::kAnyThreadWindow, false, 1), stranger) << "the active one";
  HWND first = nullptr;
  OnOtherThread([&first] {
    EXPECT_EQ(FindHostWindow(SearchMode::kAnyThreadWindow, false, 1), nullptr) << "none of this thread";
    first = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(FindHostWindow(SearchMode::kAnyThreadWindow, false, 1), first) << "found by the enumeration";
    EXPECT_EQ(FindHostWindow(SearchMode::kFrameTarget, false, 1), nullptr);
    DestroyWindow(first);
  });
}

TEST(WindowSearch, AnOuterViewIsFollowedToTheWindowThatActsForIt) {
  ScriptedHost host;
  const HWND view = host.OpenOuterView();
  const HWND other = host.OpenOuterView();
  SetActiveWindow(view);
  host.SetActiveView(other);
  EXPECT_EQ(FindHostWindow(SearchMode::kOuterViewOnly, false, 1), other);
  host.SetActiveView(host.frame());
  EXPECT_EQ(FindHostWindow(SearchMode::kOuterViewOnly, false, 1), nullptr) << "a frame acts for it";
  EXPECT_EQ(FindHostWindow(SearchMode::kFrameTarget, false, 1), host.frame());
}

TEST(WindowSearch, TheThreadsDialogsAreListedInZOrder) {
  ScriptedHost host;
  EXPECT_EQ(wfinfo::ListThreadDialogs(), nullptr);
  const HWND first = host.OpenDialog(host.frame(), false);
  const HWND second = host.OpenDialog(host.frame(), false);
  BringWindowToTop(first);
  HWND* const list = wfinfo::ListThreadDialogs();
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(std::vector<HWND>(list, list + 3), (std::vector<HWND>{first, second, nullptr}));
  EXPECT_EQ(LocalFree(list), nullptr);
  OnOtherThread([] { EXPECT_EQ(wfinfo::ListThreadDialogs(), nullptr) << "dialogs of another thread"; });
}

// --- A frame of another process ------------------------------------------------------------------------

TEST(WindowSearch, AFrameOfAnotherProcessIsNoHostOfThisOne) {
  ScriptedHost host;
  char path[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, path, sizeof path);
  const std::string folder = std::string(path).substr(0, std::string(path).find_last_of('\\') + 1);
  const std::string title = "foreign frame " + std::to_string(GetCurrentProcessId());
  std::string command = "\"" + folder + "exec_target.exe\" \"" + title + "\" 1";
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION child{};
  ASSERT_TRUE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                             &child));
  HWND foreign = nullptr;
  for (int i = 0; i < 500 && foreign == nullptr; ++i) {
    Sleep(20);
    foreign = FindWindowA("WrenfoldFrame", title.c_str());
  }
  ASSERT_NE(foreign, nullptr);
  SetActiveWindow(host.OpenWindow("STATIC"));
  BringWindowToTop(foreign);
  host.Expect(30).Answer(4).At(host.frame());
  EXPECT_EQ(MailCount(), 4) << "the own frame, though the other may stand above it";
  EXPECT_EQ(IsWrenfold(), 1);
  DestroyWindow(host.frame());
  EXPECT_EQ(IsWrenfold(), 0);
  EXPECT_EQ(IsTransmitting(), 0);
  EXPECT_EQ(MailCount(), 0);
  host.ExpectMessages(
      {"A WFINFO.dll function called on editor window but it cannot be executable on editor.\nfunction code "
       "= 30"});
  PostMessageA(foreign, WM_CLOSE, 0, 0);
  EXPECT_EQ(WaitForSingleObject(child.hProcess, 20000), static_cast<DWORD>(WAIT_OBJECT_0));
  CloseHandle(child.hThread);
  CloseHandle(child.hProcess);
}

}  // namespace
}  // namespace wfinfo_test
