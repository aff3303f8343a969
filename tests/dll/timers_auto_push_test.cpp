// The auto-push timer on real dialogs in real modal loops.
#include <gtest/gtest.h>

#include "tests/support/library.h"
#include "tests/support/private_library_win.h"
#include "tests/support/scripted_host_win.h"
#include "tests/support/test_dialog_win.h"

namespace wfinfo_test {
namespace {

constexpr INT_PTR kNobodyPressed = TestDialog::kNobodyPressed;
constexpr unsigned kLongEnough = 900;  // milliseconds in which a timer that is going to press has pressed
constexpr char kInvalidEnglish[] = "The 2nd parameter of SetAutoPushTimer series function is invalid";

std::vector<TestDialog::Button> AllButtons() { return {{1}, {2}, {3}, {4}, {5}, {6}, {7}, {42}}; }

class AutoPush : public ::testing::Test {
 protected:
  ~AutoPush() override { StopAutoPushTimer(); }

  // Sets a timer without delay and shows `dialog`. A machine too busy to show a dialog within the half second
  // that the timer waits for one is given further chances.
  INT_PTR PressAtOnce(TestDialog& dialog, const char* button) {
    INT_PTR result = kNobodyPressed;
    for (int chance = 0; chance < 4 && result == kNobodyPressed; ++chance) {
      EXPECT_EQ(SetAutoPushTimerMilli(0, button), 1);
      result = dialog.Run(host.frame(), 2000);
    }
    return result;
  }

  ScriptedHost host;
};

TEST_F(AutoPush, PressesYesTwoSecondsAfterTheDialogShows) {
  TestDialog dialog{{IDYES}, {IDNO, BS_DEFPUSHBUTTON}};
  ASSERT_EQ(SetAutoPushTimer(2, "yes"), 1);
  ASSERT_EQ(dialog.Run(host.frame(), 10000), IDYES);
  const std::uint64_t waited = dialog.commands()[0].tick - dialog.shown_at();
  EXPECT_GE(waited, 1990u);
  EXPECT_LT(waited, 4000u);
}

TEST_F(AutoPush, PressesARealMessageBox) {
  ASSERT_EQ(SetAutoPushTimerMilli(700, "no"), 1);
  const UINT_PTR rescue = SetTimer(nullptr, 0, 8000, [](HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    PostMessageA(GetLastActivePopup(GetActiveWindow()), WM_COMMAND, IDYES, 0);
  });
  EXPECT_EQ(MessageBoxA(host.frame(), "Delete?", "Confirmation", MB_YESNO), IDNO);
  KillTimer(nullptr, rescue);
}

TEST_F(AutoPush, WithoutDelayADialogIsPressedAtOnce) {
  TestDialog dialog{{IDOK}};
  ASSERT_EQ(PressAtOnce(dialog, "ok"), IDOK);
  EXPECT_LT(dialog.commands()[0].tick - dialog.shown_at(), 600u);
}

TEST_F(AutoPush, AShortDelayIsWaitedFor) {
  TestDialog dialog{{IDOK}};
  ASSERT_EQ(SetAutoPushTimerMilli(600, "ok"), 1);
  ASSERT_EQ(dialog.Run(host.frame()), IDOK);
  EXPECT_GE(dialog.commands()[0].tick - dialog.shown_at(), 590u);
}

TEST_F(AutoPush, WithoutANewDialogItGivesUp) {
  ASSERT_EQ(SetAutoPushTimerMilli(0, "ok"), 1);
  PumpFor(800);
  TestDialog dialog{{IDOK}};
  EXPECT_EQ(dialog.Run(host.frame(), kLongEnough), kNobodyPressed);
}

TEST_F(AutoPush, WaitsForADialogAsLongAsTheDelay) {
  ASSERT_EQ(SetAutoPushTimerMilli(3000, "ok"), 1);
  PumpFor(1200);
  TestDialog dialog{{IDOK}};
  ASSERT_EQ(dialog.Run(host.frame(), 9000), IDOK);
  EXPECT_GE(dialog.commands()[0].tick - dialog.shown_at(), 2990u) << "the delay counts from the dialog";
}

TEST_F(AutoPush, ADialogThatWasThereIsNeverPressed) {
  TestDialog before{{IDOK}};
  before.Show(host.frame());
  ASSERT_EQ(SetAutoPushTimerMilli(0, "ok"), 1);
  PumpFor(kLongEnough);
  EXPECT_TRUE(before.commands().empty());
  TestDialog dialog{{IDOK}};
  EXPECT_EQ(PressAtOnce(dialog, "ok"), IDOK) << "a new one beside it is";
  EXPECT_TRUE(before.commands().empty());
}

TEST_F(AutoPush, ADialogOfAnotherThreadIsNeverPressed) {
  ASSERT_EQ(SetAutoPushTimerMilli(0, "ok"), 1);
  OnOtherThread([] {
    TestDialog dialog{{IDOK}};
    EXPECT_EQ(dialog.Run(nullptr, kLongEnough), kNobodyPressed);
  });
}

TEST_F(AutoPush, EachWordPressesItsButton) {
  const struct {
    const char* word;
    int id;
  } words[] = {{"ok", 1},  {"Cancel", 2}, {"ABORT", 3}, {"retry", 4}, {"ignore", 5},
               {"yes", 6}, {"no", 7},     {"7", 7},     {"42nd", 42}};
  for (const auto& row : words) {
    TestDialog dialog(AllButtons());
    EXPECT_EQ(PressAtOnce(dialog, row.word), row.id) << row.word;
  }
}

TEST_F(AutoPush, ThePressCarriesTheButtonsWindow) {
  TestDialog dialog{{IDOK}};
  dialog.Show(nullptr);
  const HWND button = GetDlgItem(dialog.window(), IDOK);
  ASSERT_EQ(SetAutoPushTimerEver(host.frame(), "ok"), 1);
  TestDialog owned{{IDOK}};
  owned.Show(host.frame());
  SetActiveWindow(owned.window());
  PumpFor(kLongEnough);
  ASSERT_FALSE(owned.commands().empty());
  EXPECT_EQ(owned.commands()[0].control, GetDlgItem(owned.window(), IDOK));
  EXPECT_NE(owned.commands()[0].control, button);
  EXPECT_TRUE(dialog.commands().empty()) << "not a popup of the watched window";
}

TEST_F(AutoPush, WithoutAButtonTheDefaultOneIsPressed) {
  for (const char* button : {static_cast<const char*>(nullptr), "", "0"}) {
    TestDialog dialog{{1}, {42, BS_DEFPUSHBUTTON}, {7}};
    EXPECT_EQ(PressAtOnce(dialog, button), 42) << (button == nullptr ? "null" : button);
  }
}

TEST_F(AutoPush, TheDefaultButtonIsAskedOfTheDialogFirst) {
  TestDialog dialog{{1}, {42, BS_DEFPUSHBUTTON}, {7}};
  dialog.default_id = 7;
  EXPECT_EQ(PressAtOnce(dialog, ""), 7);
}

TEST_F(AutoPush, AButtonThatLooksLikeTheDefaultServesWhenTheDialogNamesNone) {
  TestDialog dialog{{1}, {42, BS_DEFPUSHBUTTON}, {7}};
  dialog.default_id = 999;  // no such control
  EXPECT_EQ(PressAtOnce(dialog, ""), 42);
}

TEST_F(AutoPush, TheFirstButtonServesWhenTheWantedOneIsMissing) {
  TestDialog dialog{{30, SS_LEFT, false}, {31}, {32}};
  EXPECT_EQ(PressAtOnce(dialog, "55"), 31);
  TestDialog without_default{{30, SS_LEFT, false}, {31}, {32}};
  without_default.default_id = 999;
  EXPECT_EQ(PressAtOnce(without_default, ""), 31);
}

TEST_F(AutoPush, ADialogWithoutButtonsEndsTheTimer) {
  TestDialog dialog{{30, SS_LEFT, false}};
  ASSERT_EQ(SetAutoPushTimerMilli(100, "ok"), 1);
  EXPECT_EQ(dialog.Run(host.frame(), kLongEnough), kNobodyPressed);
  TestDialog next{{IDOK}};
  EXPECT_EQ(next.Run(host.frame(), kLongEnough), kNobodyPressed);
}

TEST_F(AutoPush, OneDialogIsPressedForEachSetting) {
  TestDialog dialog{{IDOK}};
  ASSERT_EQ(PressAtOnce(dialog, "ok"), IDOK);
  TestDialog next{{IDOK}};
  EXPECT_EQ(next.Run(host.frame(), kLongEnough), kNobodyPressed);
}

TEST_F(AutoPush, ADialogThatClosesEarlyEndsTheTimer) {
  ASSERT_EQ(SetAutoPushTimerMilli(1200, "ok"), 1);
  TestDialog dialog{{IDOK}};
  EXPECT_EQ(dialog.Run(host.frame(), 300), kNobodyPressed);
  PumpFor(400);
  TestDialog next{{IDOK}};
  EXPECT_EQ(next.Run(host.frame(), 2500), kNobodyPressed);
}

TEST_F(AutoPush, AWrongButtonIsRefused) {
  for (const char* button : {"okay", " ok", "-1", "y"}) {
    EXPECT_EQ(SetAutoPushTimerMilli(0, button), 0) << button;
    EXPECT_EQ(SetAutoPushTimer(0, button), 0) << button;
    EXPECT_EQ(SetAutoPushTimerEver(host.frame(), button), 0) << button;
    host.ExpectMessages({kInvalidEnglish, kInvalidEnglish, kInvalidEnglish});
  }
  host.SetLanguage(Language::kJapanese);
  EXPECT_EQ(SetAutoPushTimer(0, "okay"), 0);
  host.ExpectMessages({Sjis(u8"SetAutoPushTimer系関数の第２パラメータがおかしいです。")});
}

TEST_F(AutoPush, ABadPointerIsReportedTwice) {
  EXPECT_EQ(SetAutoPushTimerMilli(0, kNumberForText), 0);
  host.ExpectMessages({kStringMessageEnglish, kInvalidEnglish});
}

TEST_F(AutoPush, AWrongButtonStopsTheTimerBefore) {
  ASSERT_EQ(SetAutoPushTimerMilli(300, "ok"), 1);
  EXPECT_EQ(SetAutoPushTimerMilli(300, "okay"), 0);
  host.ExpectMessages({kInvalidEnglish});
  TestDialog dialog{{IDOK}};
  EXPECT_EQ(dialog.Run(host.frame(), kLongEnough), kNobodyPressed);
}

TEST_F(AutoPush, ANewSettingReplacesTheOneBefore) {
  ASSERT_EQ(SetAutoPushTimerMilli(600, "ok"), 1);
  ASSERT_EQ(SetAutoPushTimerMilli(600, "cancel"), 1);
  TestDialog dialog{{IDOK}, {IDCANCEL}};
  EXPECT_EQ(dialog.Run(host.frame()), IDCANCEL);
}

TEST_F(AutoPush, StoppingEndsIt) {
  ASSERT_EQ(SetAutoPushTimerMilli(600, "ok"), 1);
  EXPECT_EQ(StopAutoPushTimer(), 0);
  TestDialog dialog{{IDOK}};
  EXPECT_EQ(dialog.Run(host.frame(), 1500), kNobodyPressed);
  EXPECT_EQ(StopAutoPushTimer(), 0) << "again";
}

TEST_F(AutoPush, OnlyTheOwnThreadStopsItWithTheSecondForm) {
  ASSERT_EQ(SetAutoPushTimerMilli(1000, "ok"), 1);
  OnOtherThread([] { EXPECT_EQ(StopAutoPushTimer2(), 0); });
  TestDialog dialog{{IDOK}};
  EXPECT_EQ(dialog.Run(host.frame()), IDOK);
  ASSERT_EQ(SetAutoPushTimerMilli(600, "ok"), 1);
  EXPECT_EQ(StopAutoPushTimer2(), 0);
  EXPECT_EQ(dialog.Run(host.frame(), 1500), kNobodyPressed);
}

TEST_F(AutoPush, AnotherThreadStopsItWithTheFirstForm) {
  ASSERT_EQ(SetAutoPushTimerMilli(600, "ok"), 1);
  OnOtherThread([] { EXPECT_EQ(StopAutoPushTimer(), 0); });
  TestDialog dialog{{IDOK}};
  EXPECT_EQ(dialog.Run(host.frame(), 1500), kNobodyPressed);
}

TEST_F(AutoPush, TheUnendingFormPressesEveryPopup) {
  ASSERT_EQ(SetAutoPushTimerEver(host.frame(), "yes"), 1);
  for (int i = 0; i < 3; ++i) {
    TestDialog dialog{{IDYES}, {IDNO}};
    EXPECT_EQ(dialog.Run(host.frame()), IDYES) << i;
  }
  OnOtherThread([] { StopAutoPushTimer2(); });
  TestDialog still{{IDYES}, {IDNO}};
  EXPECT_EQ(still.Run(host.frame()), IDYES) << "another thread's second form does not stop it";
  StopAutoPushTimer2();
  TestDialog stopped{{IDYES}, {IDNO}};
  EXPECT_EQ(stopped.Run(host.frame(), kLongEnough), kNobodyPressed) << "the own thread's does";
}

TEST_F(AutoPush, TheUnendingFormLooksUpEachDefaultButtonAnew) {
  ASSERT_EQ(SetAutoPushTimerEver(host.frame(), nullptr), 1);
  for (const WORD id : {WORD{42}, WORD{7}}) {
    TestDialog dialog{{1}, {id, BS_DEFPUSHBUTTON}};
    EXPECT_EQ(dialog.Run(host.frame()), id);
  }
  TestDialog none{{30, SS_LEFT, false}};
  EXPECT_EQ(none.Run(host.frame(), kLongEnough), kNobodyPressed);
}

TEST_F(AutoPush, TheUnendingFormLeavesAPopupWithoutTheButtonAlone) {
  ASSERT_EQ(SetAutoPushTimerEver(host.frame(), "yes"), 1);
  TestDialog dialog{{IDOK, BS_DEFPUSHBUTTON}};
  EXPECT_EQ(dialog.Run(host.frame(), kLongEnough), kNobodyPressed);
}

TEST_F(AutoPush, TheUnendingFormEndsWithItsWindow) {
  const HWND watched = host.OpenOuterView();
  ASSERT_EQ(SetAutoPushTimerEver(watched, "ok"), 1);
  DestroyWindow(watched);
  PumpFor(400);
  TestDialog dialog{{IDOK}};
  EXPECT_EQ(dialog.Run(host.frame(), kLongEnough), kNobodyPressed);
}

TEST_F(AutoPush, TheUnendingFormTakesAnyHandle) {
  for (const INT_PTR handle : {INT_PTR{0}, INT_PTR{1}, INT_PTR{0x12345678}, INT_PTR{-1}}) {
    EXPECT_EQ(SetAutoPushTimerEver(reinterpret_cast<void*>(handle), "ok"), 1);
    PumpFor(250);
  }
}

// Waits until the copy is gone, while this thread handles messages; false after ten seconds.
bool IsGoneSoon() {
  for (int tries = 0; tries < 200 && PrivateLibrary::IsLoaded(); ++tries) PumpFor(50);
  return !PrivateLibrary::IsLoaded();
}

TEST_F(AutoPush, ATimerThatAnotherThreadStoppedKeepsTheLibraryUntilItsLastTick) {
  for (const bool ever : {false, true}) {
    PrivateLibrary library;
    const auto stop = library.Export("StopAutoPushTimer", &StopAutoPushTimer);
    if (ever) {
      ASSERT_EQ(library.Export("SetAutoPushTimerEver", &SetAutoPushTimerEver)(host.frame(), "ok"), 1);
    } else {
      ASSERT_EQ(library.Export("SetAutoPushTimerMilli", &SetAutoPushTimerMilli)(3000, "ok"), 1);
    }
    OnOtherThread([stop] { EXPECT_EQ(stop(), 0); });
    library.Free();
    ASSERT_TRUE(PrivateLibrary::IsLoaded()) << "its timer is going to tick";
    EXPECT_TRUE(IsGoneSoon());
    PumpFor(300);
  }
}

TEST_F(AutoPush, EachStrayTimerHoldsTheLibraryOnItsOwn) {
  PrivateLibrary library;
  const auto set = library.Export("SetAutoPushTimerMilli", &SetAutoPushTimerMilli);
  ASSERT_EQ(set(3000, "ok"), 1);
  OnOtherThread(
      [set] { EXPECT_EQ(set(3000, "ok"), 1); });  // which stops the first; its own ends with its thread
  ASSERT_EQ(set(3000, "ok"), 1);
  OnOtherThread([set] { EXPECT_EQ(set(3000, "ok"), 1); });
  library.Free();
  ASSERT_TRUE(PrivateLibrary::IsLoaded());
  EXPECT_TRUE(IsGoneSoon());
}

TEST_F(AutoPush, AStrayTimerEndsWithItsThread) {
  PrivateLibrary library;
  const auto set = library.Export("SetAutoPushTimerMilli", &SetAutoPushTimerMilli);
  const auto stop = library.Export("StopAutoPushTimer", &StopAutoPushTimer);
  OnOtherThread([set, stop] {
    EXPECT_EQ(set(3000, "ok"), 1);
    OnOtherThread([stop] { stop(); });
  });
  library.Free();
  EXPECT_TRUE(IsGoneSoon());
}

TEST_F(AutoPush, UnloadingTheLibraryKillsTheTimer) {
  PrivateLibrary library;
  ASSERT_EQ(library.Export("SetAutoPushTimerMilli", &SetAutoPushTimerMilli)(300, "ok"), 1);
  library.Unload();
  // The system would swallow the fault of a call into unloaded code: look for the timer itself.
  const std::uint64_t end = GetTickCount64() + 400;
  while (GetTickCount64() < end) {
    MSG message;
    if (PeekMessageA(&message, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE)) {
      ADD_FAILURE() << "a timer of the library is left";
      break;
    }
    Sleep(10);
  }
}

}  // namespace
}  // namespace wfinfo_test
