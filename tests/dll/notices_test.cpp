// The notification window and the balloons.
#include <gtest/gtest.h>

#include "tests/support/bystander_win.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

Slot HandleSlot(HWND window) { return static_cast<Slot>(reinterpret_cast<INT_PTR>(window)); }

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

TEST(Notices, HidingPressesNothingWhenTheHostNamesNoWindow) {
  ScriptedHost host;
  const Bystander bystander(host);
  host.Expect(135).Null().Null().Answer(HandleSlot(HWND_BROADCAST));
  EXPECT_EQ(HideNotifyWnd(), 0);
  EXPECT_EQ(bystander.commands(), 0);
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
