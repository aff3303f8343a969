// The views of a mail's header.
#include <gtest/gtest.h>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

TEST(MailOperations, AHeaderViewIsTheMenuCommandOfItsNumber) {
  ScriptedHost host;
  host.ExpectCommand(40044).Answer(5);
  EXPECT_EQ(SwitchHeaderView(0), 5);
  host.ExpectCommand(40047).Answer(1);
  EXPECT_EQ(SwitchHeaderView(3), 1) << "the other views follow the first";
  host.ExpectCommand(40043).Answer(1);
  EXPECT_EQ(SwitchHeaderView(-1), 1) << "the library does not judge the number";
}

}  // namespace
}  // namespace wfinfo_test
