// The host as an application: versions, settings, menu.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

TEST(Application, VersionsAreAskedOnlyWhereAHostIs) {
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

TEST(Application, ARootMailIsLoadedFromAsFarAsAFileReaches) {
  ScriptedHost host;
  constexpr long long kBeyond4GiB = 0x123456789;
  host.Expect(130).Answer(kBeyond4GiB);
  host.Expect(202).Text("mail").Int(kBeyond4GiB).Answer(1);
  EXPECT_EQ(LoadRootMail("mail", MailFileOffset()), 1);
}

TEST(Application, ARestartIsAMenuCommandOfTheTarget) {
  ScriptedHost host;
  host.ExpectCommand(40444);
  RestartTamarinMail(1);
  host.ExpectCommand(40443);
  RestartTamarinMail(0);
}

TEST(Application, AChangedSettingIsToldToTheFrame) {
  ScriptedHost host;
  for (const long long answer : {2LL, 0LL}) {
    host.Expect(70).Answer(answer);
    EXPECT_EQ(EnvChanged(), answer);
  }
}

TEST(Application, TheCheckMarkOfAMenuItemIsRead) {
  ScriptedHost host;
  const HMENU menu = CreateMenu();
  AppendMenuA(menu, MF_CHECKED, 40002, "checked");
  AppendMenuA(menu, MF_UNCHECKED, 40003, "not checked");
  const struct {
    int item;
    int expected;
  } cases[] = {{40002, 1}, {40003, 0}, {40004, 0}};
  for (const auto& c : cases) {
    host.Expect(329).Answer(AsValue(menu));
    EXPECT_EQ(GetCurrentMenuCheckState(c.item), c.expected) << c.item;
  }
  DestroyMenu(menu);
}

}  // namespace
}  // namespace wfinfo_test
