// Exports that send more than one request, and the ones that show and find the host's windows.
#include <gtest/gtest.h>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

Slot HandleSlot(HWND window) { return static_cast<Slot>(reinterpret_cast<INT_PTR>(window)); }

TEST(Composed, SelectFolderSendsItsSubCommandAndThePair) {
  ScriptedHost host;
  host.Expect(8).Int(0).Text("inbox").Null().Answer(1);
  EXPECT_EQ(SelectFolder("inbox", nullptr), 1);
  host.Expect(8).Int(1).Text("group").Answer(1);
  EXPECT_EQ(SelectAccountGroup("group"), 1);
}

TEST(Composed, DeleteFolderAsksBeforeItDeletes) {
  ScriptedHost host;
  host.Expect(246).Text("a").Text("b").Answer(0);
  EXPECT_EQ(DeleteFolder("a", "b"), 0);
  host.Expect(246).Text("a").Text("b").Answer(1);
  host.Expect(260).Text("a").Text("b").Answer(7);
  EXPECT_EQ(DeleteFolder("a", "b"), 7);
  EXPECT_EQ(DeleteFolder("a", kNumberForText), 0);
  host.ExpectMessages({kStringMessageEnglish});
}

TEST(Composed, TheEditorMacroIsGivenForTheMatchingPurposeOnly) {
  ScriptedHost host;
  host.Expect(169).Answer(1);
  host.Expect(19).Answer("reply.macro");
  EXPECT_STREQ(ReplyMacro(), "reply.macro");
  host.Expect(169).Answer(1);
  EXPECT_STREQ(ForwardMacro(), "");
  host.Expect(169).Answer(1);
  EXPECT_STREQ(NewMailMacro(), "");
}

TEST(Composed, VersionsAreAskedOnlyWhereAHostIs) {
  EXPECT_EQ(WFInfoTamarinMailVersion(), 0);
  EXPECT_EQ(WFInfoTamarinMailVersionBeta(), 0);
  ScriptedHost host;
  host.Expect(48).Answer(710);
  EXPECT_EQ(WFInfoTamarinMailVersion(), 710);
  host.Expect(289).Answer(3);
  EXPECT_EQ(WFInfoTamarinMailVersionBeta(), 3);
  host.Expect(48).Answer(711);
  EXPECT_EQ(TamarinMailVersion(), 711);
  host.Expect(93).Answer(1);
  EXPECT_EQ(IsWrenfoldMacroExecuting(), 1);
  host.Expect(93).Answer(0);
  EXPECT_EQ(IsTamarinMailMacroExecuting(), 0);
}

TEST(Composed, AnHtmlMailIsQuotedThroughTwoRequests) {
  ScriptedHost host;
  host.Expect(268).Answer("<p>hi</p>");
  host.Expect(269).Text("<p>hi</p>").Answer("<blockquote>");
  EXPECT_STREQ(QuotedRootHtml(), "<blockquote>");
}

TEST(Composed, ARootMailIsLoadedFromAsFarAsAFileReaches) {
  ScriptedHost host;
  constexpr long long kBeyond4GiB = 0x123456789;
  host.Expect(130).Answer(kBeyond4GiB);
  host.Expect(202).Text("mail").Int(kBeyond4GiB).Answer(1);
  EXPECT_EQ(LoadRootMail("mail", MailFileOffset()), 1);
}

TEST(Composed, AnAccountsImapFlagIsReadFromItsBorrowedRecord) {
  ScriptedHost host;
  static char record[4896];
  record[1386] = 0x04;
  const auto address = HandleSlot(reinterpret_cast<HWND>(record));
  host.Expect(75).Text("home").Answer(address);
  host.Expect(77).Int(address);
  EXPECT_EQ(IsImapSyncAccount("home"), 1);
  record[1386] = 0x03;
  host.Expect(75).Text("home").Answer(address);
  host.Expect(77).Int(address);
  EXPECT_EQ(IsImapSyncAccount("home"), 0);
  host.Expect(75).Text("none").Answer(0);
  EXPECT_EQ(IsImapSyncAccount("none"), 0);
  EXPECT_EQ(IsImapSyncAccount(nullptr), 0);
  host.ExpectMessages({kStringMessageEnglish});
}

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

// --- Notices -------------------------------------------------------------------------------------------

TEST(Notices, ANotificationIsCheckedAndSent) {
  ScriptedHost host;
  host.Expect(135).Text("title").Text("body").Answer(55);
  EXPECT_EQ(ShowNotifyWnd("title", "body"), 55);
  for (const auto& [language, own] :
       {std::pair{Language::kEnglish, std::string("Invalid ShowNotifyWnd parameter.")},
        std::pair{Language::kJapanese, Sjis(u8"ShowNotifyWndのパラメータがおかしいです。")}}) {
    host.SetLanguage(language);
    EXPECT_EQ(ShowNotifyWnd("title", kNumberForText), 0);
    EXPECT_EQ(ShowNotifyWnd(kNumberForText, "body"), 0);
    const std::string check =
        language == Language::kEnglish ? kStringMessageEnglish : StringMessageJapanese();
    host.ExpectMessages({check, own, check, own});
  }
}

TEST(Notices, ANullFirstTextForwardsTheSecondUnchecked) {
  ScriptedHost host;
  host.Expect(135).Null().Pointer(kNumberForText).Answer(1);
  EXPECT_EQ(ShowNotifyWnd(nullptr, kNumberForText), 1);
  host.Expect(135).Null().Null().Answer(9);
  EXPECT_EQ(GetNotifyWnd(), 9);
}

TEST(Notices, HidingClosesTheWindowIfThereIsOne) {
  ScriptedHost host;
  host.Expect(135).Null().Null().Answer(0);
  EXPECT_EQ(HideNotifyWnd(), 0);
  const HWND notice = host.OpenWindow("WrenfoldNotice");
  host.Expect(135).Null().Null().Answer(HandleSlot(notice));
  host.ExpectCommand(IDCANCEL).At(notice);
  EXPECT_EQ(HideNotifyWnd(), 0);
}

TEST(Notices, BalloonsAreCheckedAndSent) {
  ScriptedHost host;
  host.Expect(282).Text("a").Text("b").Answer(1);
  EXPECT_EQ(ShowBalloonMessage("a", "b"), 1);
  host.Expect(317).Text("a").Text("b").Null().Answer(2);
  EXPECT_EQ(AddBalloonMessage("a", "b", nullptr), 2);
  host.Expect(317).Text("a").Text("b").Text("c").Answer(3);
  EXPECT_EQ(AddBalloonMessage("a", "b", "c"), 3);
  EXPECT_EQ(ShowBalloonMessage(nullptr, "b"), 0);
  EXPECT_EQ(ShowBalloonMessage("a", kNumberForText), 0);
  EXPECT_EQ(AddBalloonMessage("a", "b", kNumberForText), 0);
  const char show[] = "Invalid ShowBalloonMessage parameter.";
  const char add[] = "Invalid AddBalloonMessage parameter.";
  host.ExpectMessages({kStringMessageEnglish, show, kStringMessageEnglish, show, kStringMessageEnglish, add});
  host.SetLanguage(Language::kJapanese);
  EXPECT_EQ(ShowBalloonMessage("a", nullptr), 0);
  EXPECT_EQ(AddBalloonMessage("a", nullptr, nullptr), 0);
  host.ExpectMessages({StringMessageJapanese(), Sjis(u8"ShowBalloonMessageのパラメータがおかしいです。"),
                       StringMessageJapanese(), Sjis(u8"AddBalloonMessageのパラメータがおかしいです。")});
}

}  // namespace
}  // namespace wfinfo_test
