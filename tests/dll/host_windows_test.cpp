// The exports that show and find the host's windows.
#include <gtest/gtest.h>

#include <utility>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"
#include "tests/support/test_dialog_win.h"

namespace wfinfo_test {
namespace {

Slot HandleSlot(HWND window) { return static_cast<Slot>(reinterpret_cast<INT_PTR>(window)); }

TEST(HostWindows, TheMainWindowIsTheFirstFrameThatShowsNoSearchResults) {
  ScriptedHost host;
  const HWND results = host.OpenFrame();
  BringWindowToTop(results);
  SetActiveWindow(host.frame());
  host.Expect(129).Int(0).Answer(HandleSlot(results)).Always();
  EXPECT_EQ(MainWnd(), host.frame());
  EXPECT_EQ(MainWnd2(), results);
  EXPECT_EQ(IsWrenfoldMain(), 1);
  EXPECT_EQ(IsWrenfoldGrep(), 0);
  host.SetRequestTarget(results);
  EXPECT_EQ(IsWrenfoldGrep(), 1);
  EXPECT_EQ(IsTamarinMailGrep(), 1);
}

TEST(HostWindows, AChildWindowAsRequestTargetActsForItsFrame) {
  ScriptedHost host;
  const HWND results = host.OpenFrame();
  SetActiveWindow(host.frame());
  host.Expect(129).Int(0).Answer(HandleSlot(results)).Always();
  host.SetRequestTarget(host.OpenWindow("WrenfoldView", host.frame(), WS_CHILD | WS_VISIBLE));
  EXPECT_EQ(IsWrenfoldMain(), 1);
  EXPECT_EQ(IsWrenfoldGrep(), 0);
  host.SetRequestTarget(host.OpenWindow("WrenfoldView", results, WS_CHILD | WS_VISIBLE));
  EXPECT_EQ(IsWrenfoldGrep(), 1);
  EXPECT_EQ(SetGrepWndTop(), 0) << "it is the caller's own";
  host.SetRequestTarget(host.OpenWindow("STATIC"));
  EXPECT_EQ(IsWrenfoldMain(), 0) << "a window of its own is no frame";
}

TEST(HostWindows, AnOuterViewIsNoMainWindow) {
  ScriptedHost host;
  SetActiveWindow(host.OpenOuterView());
  EXPECT_EQ(IsWrenfoldMain(), 0);
}

TEST(HostWindows, TheMainWindowIsMinimisedMaximisedAndRestored) {
  EXPECT_EQ(MinimizeWindow(), 0) << "no window";
  EXPECT_EQ(IsIcon(), 0);
  ScriptedHost host;
  host.Expect(129).Int(0).Always();
  EXPECT_EQ(MinimizeWindow(), 1);
  EXPECT_EQ(IsIcon(), 1);
  EXPECT_EQ(RestoreWindow(), 1);
  EXPECT_EQ(IsIcon(), 0);
  EXPECT_EQ(MaximizeWindow(), 1);
  EXPECT_TRUE(IsZoomed(host.frame()));
  host.Expect(39).Answer(1);
  EXPECT_EQ(TrayIcon(), 1);
  EXPECT_FALSE(IsWindowVisible(host.frame()));
}

TEST(HostWindows, WithoutAnIconInTheTrayTheWindowIsOnlyMinimised) {
  ScriptedHost host;
  host.Expect(129).Int(0).Always();
  host.Expect(39).Do([&](const Request&) {
    EXPECT_TRUE(IsIconic(host.frame())) << "asked when the host may have made its icon";
    return 0LL;
  });
  EXPECT_EQ(TrayIcon(), 1);
  EXPECT_TRUE(IsWindowVisible(host.frame()));
}

TEST(HostWindows, NextAndPreviousWalkRoundTheHostsWindows) {
  ScriptedHost host;
  host.Expect(129).Int(0).Always();
  EXPECT_EQ(NextTamWren(), 0) << "no other window";
  const HWND view = host.OpenOuterView();
  host.OpenWindow("STATIC");
  SetActiveWindow(host.frame());
  EXPECT_EQ(NextTamWren(), 1);
  EXPECT_EQ(GetActiveWindow(), view);
  EXPECT_EQ(PrevTamWren(), 1);
  EXPECT_EQ(GetActiveWindow(), host.frame());
}

TEST(HostWindows, TheWaitCursorIsSetAndTakenBack) {
  SetCursor(LoadCursorA(nullptr, IDC_CROSS));
  void* const before = SetWaitCursor();
  EXPECT_EQ(before, LoadCursorA(nullptr, IDC_CROSS));
  EXPECT_EQ(GetCursor(), LoadCursorA(nullptr, IDC_WAIT));
  RestoreWaitCursor(before);
  EXPECT_EQ(GetCursor(), LoadCursorA(nullptr, IDC_CROSS));
  RestoreWaitCursor(nullptr);
  EXPECT_EQ(GetCursor(), LoadCursorA(nullptr, IDC_ARROW));
}

class ViewerFocus : public ::testing::Test {
 protected:
  HWND Child(HWND parent, const char* class_name = "ViewerPart") {
    const HWND child = host.OpenWindow(class_name, parent, WS_CHILD);
    SetWindowPos(child, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    return child;
  }
  static constexpr char kBrowser[] = "Internet Explorer_Server";

  ScriptedHost host;
  HWND viewer = host.OpenHtmlViewer();
};

class WindowsToTheTop : public ::testing::Test {
 protected:
  WindowsToTheTop() {
    host.hook = [this](HWND window, UINT message, WPARAM wparam, LPARAM lparam, LRESULT*) {
      if (message != wfinfo::kHostRaiseWindow) return false;
      EXPECT_EQ(lparam, 0);
      raised.emplace_back(window, reinterpret_cast<HWND>(wparam));
      return true;
    };
  }
  using Raised = std::vector<std::pair<HWND, HWND>>;  // asked, to be raised

  ScriptedHost host;
  Raised raised;
};

TEST_F(ViewerFocus, WithoutChildrenThereIsNone) {
  EXPECT_EQ(FindHtmlViewerFocusWnd(viewer), nullptr);
  for (const INT_PTR bad : {INT_PTR{7}, INT_PTR{0x12345678}, INT_PTR{-3}}) {
    EXPECT_EQ(FindHtmlViewerFocusWnd(reinterpret_cast<void*>(bad)), nullptr);
  }
}

TEST_F(ViewerFocus, TheFirstChildServesWithoutABrowser) {
  const HWND first = Child(viewer);
  Child(first);
  EXPECT_EQ(FindHtmlViewerFocusWnd(viewer), first);
}

TEST_F(ViewerFocus, ABrowserIsFoundAtAnyDepth) {
  const HWND first = Child(viewer);
  const HWND left = Child(first);
  Child(left);
  const HWND right = Child(first);
  const HWND shallow = Child(Child(right), kBrowser);
  EXPECT_EQ(FindHtmlViewerFocusWnd(viewer), shallow);
  const HWND deep_left = Child(left, kBrowser);
  EXPECT_EQ(FindHtmlViewerFocusWnd(viewer), deep_left) << "children before siblings";
}

TEST_F(ViewerFocus, TheFirstChildMayBeTheBrowser) {
  const HWND first = Child(viewer, kBrowser);
  Child(first, kBrowser);
  EXPECT_EQ(FindHtmlViewerFocusWnd(viewer), first);
}

TEST_F(ViewerFocus, TheClassNameIsCompared) {
  const HWND first = Child(viewer);
  Child(first, "Internet Explorer_ServerToo");
  Child(first, "internet explorer_server2");
  EXPECT_EQ(FindHtmlViewerFocusWnd(viewer), first);
}

TEST_F(WindowsToTheTop, TheMainWindowIsRaisedByTheFrame) {
  host.Expect(129).Int(0).Answer(0);
  EXPECT_EQ(SetMainWndTop(), 1);
  EXPECT_EQ(raised, (Raised{{host.frame(), host.frame()}}));
}

TEST_F(WindowsToTheTop, TheMainWindowIsRaisedEvenWhileADialogShows) {
  host.OpenDialog(host.frame(), true);
  // The library may ask for the grep window only when no dialog shows; without an answer every frame counts.
  BoxCloser closer;
  EXPECT_EQ(SetMainWndTop(), 1);
  EXPECT_EQ(raised, (Raised{{host.frame(), host.frame()}}));
}

TEST_F(WindowsToTheTop, AHiddenMainWindowIsNot) {
  ShowWindow(host.frame(), SW_HIDE);
  host.Expect(129).Int(0).Answer(0);
  EXPECT_EQ(SetMainWndTop(), 0);
  EXPECT_TRUE(raised.empty());
}

TEST_F(WindowsToTheTop, TheGrepWindowIsRaisedByTheFrame) {
  const HWND grep = host.OpenFrame();
  SetActiveWindow(host.frame());
  host.Expect(129).Int(0).Answer(HandleSlot(grep));
  host.Expect(264);
  EXPECT_EQ(SetGrepWndTop(), 1);
  EXPECT_EQ(raised, (Raised{{host.frame(), grep}}));
}

TEST_F(WindowsToTheTop, TheGrepWindowDoesNotRaiseItself) {
  host.Expect(129).Int(0).Answer(HandleSlot(host.frame()));
  EXPECT_EQ(SetGrepWndTop(), 0);
  EXPECT_TRUE(raised.empty());
}

TEST_F(WindowsToTheTop, WithoutAGrepWindowThatShowsNothingHappens) {
  host.Expect(129).Int(0).Answer(0);
  EXPECT_EQ(SetGrepWndTop(), 0);
  const HWND hidden = host.OpenWindow("WrenfoldFrame", nullptr, WS_OVERLAPPEDWINDOW);
  SetActiveWindow(host.frame());
  host.Expect(129).Int(0).Answer(HandleSlot(hidden));
  EXPECT_EQ(SetGrepWndTop(), 0);
  host.Expect(129).Int(0).Answer(7);
  EXPECT_EQ(SetGrepWndTop(), 0) << "no window";
  EXPECT_TRUE(raised.empty());
}

TEST(WindowsToTheTopWithoutAHost, NothingHappens) {
  EXPECT_EQ(SetMainWndTop(), 0);
  EXPECT_EQ(SetGrepWndTop(), 0);
}

}  // namespace
}  // namespace wfinfo_test
