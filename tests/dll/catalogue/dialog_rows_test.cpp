// One test over all exports: while a modal dialog of the host shows, no call tells the user of it more than
// once, and only the allowed codes reach the host.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "src/catalogue/reference.h"
#include "tests/support/library.h"
#include "tests/support/row_calls_win.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using wfinfo::catalogue::Kind;
using wfinfo::catalogue::Row;
using wfinfo::catalogue::Rows;

// Boxes closed so far that refuse because of a dialog.
std::size_t Refusals(BoxCloser& closer) {
  std::size_t count = 0;
  for (const auto& box : closer.boxes()) {
    count += box.text.find("Cannot proceed because a dialog box showing") != std::string::npos ? 1 : 0;
  }
  return count;
}

class DialogRows : public testing::Test {
 protected:
  DialogRows() {
    targets_ = {host_.OpenWindow("STATIC"), host_.frame()};
    host_.hook = [this](HWND, UINT message, WPARAM wparam, LPARAM lparam, LRESULT* answer) {
      const bool command = IsMenuCommand(message, wparam, lparam);
      if (!IsRequest(message) && !command) return false;
      sent_.push_back(command ? -static_cast<int>(wparam) : static_cast<int>(wparam));
      *answer = 0;
      return true;
    };
    dialog_ = host_.OpenDialog(host_.frame(), true);
  }
  ~DialogRows() override {
    host_.TakeMessages();
    EnableWindow(host_.frame(), TRUE);
  }

  // The calls may have hidden or minimised what stands here.
  void Prepare() {
    ShowWindow(host_.frame(), SW_SHOWNORMAL);
    ShowWindow(dialog_, SW_SHOW);
    SetActiveWindow(dialog_);
    sent_.clear();
  }

  ScriptedHost host_;
  CallTargets targets_;
  HWND dialog_;
  std::vector<int> sent_;
};

// Boxes that a call shows when all that it asks is refused.
std::size_t BoxesOf(const Row& row) {
  // Without a view a request to one finds no window, and nothing is refused.
  if (row.dispatcher == "View") return 0;
  return row.kind == Kind::kThin && wfinfo::IsAllowedDuringDialog(row.code) ? 0 : 1;
}

// Exports that do not come as far as a refused request in these calls.
bool AsksOnlySometimes(std::string_view name) {
  static const std::map<std::string_view, std::string_view> kReasons = {
      {"CallByEmailList", "calls an export that asks nothing"},
      {"GetAccountProp", "no account is borrowed"},
      {"SaveAccountProp", "no account is borrowed"},
      {"PgpEncryptSuper", "there is no program"},
      {"PgpEncrypt", "there is no program"},
      {"PgpSign", "there is no program"},
      {"PgpDecrypt", "there is no program"},
  };
  return kReasons.count(name) != 0;
}

TEST_F(DialogRows, OneCallShowsOneBoxAtMost) {
  BoxCloser closer;
  for (const Row& row : Rows()) {
    if (!ReasonNotToCall(row).empty()) continue;
    std::size_t most_boxes = 0;
    for (const ArgumentList& arguments : ArgumentListsOf(row, targets_)) {
      Prepare();
      const std::size_t before = Refusals(closer);
      CallRow(row, arguments, targets_);
      EndLateEffects();
      const std::size_t boxes = Refusals(closer) - before;
      most_boxes = std::max(most_boxes, boxes);
      if (row.kind == Kind::kHand) {
        EXPECT_LE(boxes, 1u) << row.name;
      } else {
        EXPECT_EQ(boxes, BoxesOf(row)) << row.name;
      }
      for (const int code : sent_) {
        // The macro names the window to ExecAt itself: that request is no matter of the search.
        EXPECT_TRUE(wfinfo::IsAllowedDuringDialog(code) || row.name == "ExecAt")
            << row.name << " sent " << code;
      }
    }
    if (row.kind == Kind::kHand && !AsksOnlySometimes(row.name)) {
      const bool told = DialogSentence(row).find("efused") != std::string::npos;
      EXPECT_EQ(most_boxes != 0, told) << row.name << ": " << DialogSentence(row);
    }
  }
}

TEST_F(DialogRows, TheBoxNamesTheFirstCodeThatWasRefused) {
  BoxCloser closer;
  const struct {
    void (*call)();
    const char* code;
  } cases[] = {
      {[] { EXPECT_EQ(DoGrep(nullptr, nullptr, 0), 0); }, "256"},
      {[] { EXPECT_EQ(StartDoGrep(nullptr, nullptr, 0), 0); }, "256"},
      {[] { EXPECT_EQ(CloseGrepWnd(1), 0); }, "256"},
      {[] { EXPECT_EQ(IsHighPriority(), 0); }, "329"},
      {[] { EXPECT_EQ(TrayIcon(), 1); }, "39"},
      {[] { EXPECT_STREQ(QuotedRootBody(), ""); }, "1"},
      {[] { EXPECT_EQ(SyncOrikaeshi(), 0); }, "263"},
      {[] { EXPECT_STREQ(SelectedRootText2(), ""); }, "47"},
      {[] {
         EXPECT_STREQ(CallByEmailList("FindBook", "a@example.com, b@example.com", 0, 0, 0, 0, 0, 0, 0, 0),
                      ", ");
       },
       "98"},
  };
  for (const auto& c : cases) {
    Prepare();
    const std::size_t before = closer.boxes().size();
    c.call();
    const auto boxes = closer.boxes();
    ASSERT_EQ(boxes.size(), before + 1) << c.code;
    EXPECT_TRUE(boxes.back().text.ends_with("\nfunction code = " + std::string(c.code))) << boxes.back().text;
  }
}

TEST_F(DialogRows, EachCallTellsAnew) {
  BoxCloser closer;
  for (int i = 0; i < 3; ++i) EXPECT_STREQ(QuotedRootBody(), "");
  EXPECT_EQ(Refusals(closer), 3u);
}

// A macro that the host runs while it answers makes calls of its own.
TEST(DialogCalls, CallsThatTheHostMakesMeanwhileAreTheirOwn) {
  ScriptedHost host;
  BoxCloser closer;
  host.hook = [&](HWND, UINT message, WPARAM wparam, LPARAM, LRESULT* answer) {
    if (!IsRequest(message)) return false;
    *answer = 1;
    if (wparam == 71) {
      const HWND dialog = host.OpenDialog(host.frame(), true);
      for (int i = 0; i < 2; ++i) EXPECT_STREQ(QuotedRootBody(), "");
      EXPECT_EQ(IsTransmitting(), 0);
      DestroyWindow(dialog);
      const HWND second = host.OpenDialog(host.frame(), true);
      SetActiveWindow(second);
    }
    return true;
  };
  EXPECT_EQ(TransmitCustom(1), 0) << "its second request is refused";
  EXPECT_EQ(Refusals(closer), 4u) << "three of the macro's calls, one of ours";
  EnableWindow(host.frame(), TRUE);
}

// --- The library's own look-ups ---

class DialogLookUps : public testing::Test {
 protected:
  void ShowDialog() { dialog_ = host_.OpenDialog(host_.frame(), true); }
  // What a macro gets while the dialog is active, which showing a window may change.
  template <class Result>
  Result InDialog(Result (*call)()) {
    SetActiveWindow(dialog_);
    return call();
  }
  ~DialogLookUps() override {
    EXPECT_TRUE(closer_.boxes().empty()) << "nobody asked for it";
    EXPECT_EQ(host_.received(), 0) << "129 is not sent";
    EnableWindow(host_.frame(), TRUE);
  }

  ScriptedHost host_;
  HWND dialog_ = nullptr;
  BoxCloser closer_;
};

TEST_F(DialogLookUps, TheOnlyFrameIsTheMainWindow) {
  ShowDialog();
  EXPECT_EQ(InDialog(MainWnd), host_.frame());
  EXPECT_EQ(InDialog(IsIcon), 0);
  EXPECT_EQ(InDialog(IsWrenfoldMain), 1);
  EXPECT_EQ(InDialog(IsWrenfoldGrep), 0);
  EXPECT_EQ(InDialog(MaximizeWindow), 1);
  EXPECT_TRUE(IsZoomed(host_.frame()));
  EXPECT_EQ(InDialog(RestoreWindow), 1);
  EXPECT_EQ(InDialog(MinimizeWindow), 1);
  EXPECT_TRUE(IsIconic(host_.frame()));
}

TEST_F(DialogLookUps, AFrameThatMayBeTheGrepWindowIsLeftAlone) {
  const HWND grep = host_.OpenFrame();
  ShowDialog();
  for (const HWND top : {host_.frame(), grep}) {
    SetWindowPos(top, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    bool raised = false;
    host_.hook = [&](HWND, UINT message, WPARAM, LPARAM, LRESULT*) {
      raised = raised || message == wfinfo::kHostRaiseWindow;
      return false;
    };
    EXPECT_EQ(InDialog(MainWnd), nullptr);
    EXPECT_EQ(InDialog(SetMainWndTop), 0);
    EXPECT_FALSE(raised);
    for (int (*call)() : {MinimizeWindow, MaximizeWindow, RestoreWindow, TrayIcon, IsIcon, NextTamWren,
                          PrevTamWren, IsWrenfoldGrep}) {
      EXPECT_EQ(InDialog(call), 0);
    }
    for (const HWND frame : {host_.frame(), grep}) {
      EXPECT_FALSE(IsIconic(frame));
      EXPECT_FALSE(IsZoomed(frame));
      EXPECT_TRUE(IsWindowVisible(frame));
    }
    host_.hook = nullptr;
  }
}

}  // namespace
}  // namespace wfinfo_test
