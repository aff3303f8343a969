// The views of a mail's header, and its log.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"

namespace wfinfo_test {
namespace {

struct Word {
  const char* word;
  long long code;
};

TEST(MailOperations, AHeaderViewIsTheMenuCommandOfItsNumber) {
  ScriptedHost host;
  host.ExpectCommand(40044).Answer(5);
  EXPECT_EQ(SwitchHeaderView(0), 5);
  host.ExpectCommand(40047).Answer(1);
  EXPECT_EQ(SwitchHeaderView(3), 1) << "the other views follow the first";
  host.ExpectCommand(40043).Answer(1);
  EXPECT_EQ(SwitchHeaderView(-1), 1) << "the library does not judge the number";
}

TEST(OpenLog, RunsTheCommandOfItsKind) {
  ScriptedHost host;
  for (const Word& w : {Word{"direct", 40308},
                        {"DIRECT", 40308},
                        {"decode", 40309},
                        {"Decode", 40309},
                        {"", 40100},
                        {"other", 40100},
                        {nullptr, 40100}}) {
    host.ExpectCommand(static_cast<int>(w.code));
    OpenLog(w.word);
    host.Verify();
  }
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] {
      host.ExpectCommand(40100);
      OpenLog(bad);
    });
  }
}

}  // namespace
}  // namespace wfinfo_test
