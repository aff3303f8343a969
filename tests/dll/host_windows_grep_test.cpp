// Closing grep windows.
#include <gtest/gtest.h>

#include "tests/support/bystander_win.h"
#include "tests/support/grep_windows_win.h"
#include "tests/support/library.h"

namespace wfinfo_test {
namespace {

TEST_F(GrepWindows, CloseGrepWndClosesOneOrAll) {
  EXPECT_EQ(CloseGrepWnd(0), 0) << "none is there";
  EXPECT_EQ(CloseGrepWnd(1), 0);
  for (int i = 0; i < 3; ++i) OpenGrepWindow();
  EXPECT_EQ(CloseGrepWnd(0), 1);
  EXPECT_EQ(windows_.size(), 2u);
  OpenGrepWindow();
  EXPECT_EQ(CloseGrepWnd(1), 1);
  EXPECT_TRUE(windows_.empty());
  for (int i = 0; i < 3; ++i) OpenGrepWindow();
  refusing_ = windows_[1];
  EXPECT_EQ(CloseGrepWnd(-1), 0) << "the second refuses";
  EXPECT_EQ(windows_.size(), 2u);
}

TEST_F(GrepWindows, CloseGrepWndIsRefusedOnAGrepWindowAndDuringASearch) {
  OpenGrepWindow();
  running_ = true;
  ExpectReports(
      host, {{"Cannot call CloseGrepWnd in grep processing.", u8"検索中はCloseGrepWnd関数は使えません。"}},
      [] { EXPECT_EQ(CloseGrepWnd(1), 0); });
  windows_ = {host.frame()};
  ExpectReports(
      host,
      {{"CloseGrepWnd function called on grep result window. CloseGrepWnd function must be called on "
        "TamarinMail main window. Please refer the help.",
        u8"CloseGrepWnd関数が検索結果ウィンドウで呼ばれました。CloseGrepWnd関数はTamarinMailの"
        u8"メインウィンドウで呼ぶ必要があります。ヘルプを参照してください。"}},
      [] { EXPECT_EQ(CloseGrepWnd(1), 0); });
  EXPECT_EQ(close_commands_, 0);
}

TEST(CloseGrepWnd, EndsWhenTheHostGoesOnNamingWindowsThatAreGone) {
  for (const std::size_t period : {1u, 2u, 3u, 7u}) {
    ScriptedHost host;
    std::vector<HWND> gone;
    for (std::size_t i = 0; i < period; ++i) gone.push_back(host.OpenWindow("GrepOfTests"));
    for (const HWND window : gone) DestroyWindow(window);
    SetActiveWindow(host.frame());
    std::size_t asked = 0;
    host.Expect(129).Any().Always().Do([&](const Request&) { return AsValue(gone[asked++ % period]); });
    host.Expect(256).Always();
    EXPECT_EQ(CloseGrepWnd(1), 1) << "none is left";
    EXPECT_LT(asked, 10 * period);
  }
}

TEST(CloseGrepWnd, PressesNothingWhenTheHostNamesNoWindow) {
  ScriptedHost host;
  const Bystander bystander(host);
  host.Expect(129).Any().Always().Do([&](const Request&) { return AsValue(HWND_BROADCAST); });
  host.Expect(256).Always();
  EXPECT_EQ(CloseGrepWnd(0), 1);
  EXPECT_EQ(bystander.commands(), 0);
}

}  // namespace
}  // namespace wfinfo_test
