// The macros of the editor.
#include <gtest/gtest.h>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

TEST(Writing, TheEditorMacroIsGivenForTheMatchingPurposeOnly) {
  ScriptedHost host;
  host.Expect(169).Answer(1);
  host.Expect(19).Answer("reply.macro");
  EXPECT_STREQ(ReplyMacro(), "reply.macro");
  host.Expect(169).Answer(1);
  EXPECT_STREQ(ForwardMacro(), "");
  host.Expect(169).Answer(1);
  EXPECT_STREQ(NewMailMacro(), "");
}

}  // namespace
}  // namespace wfinfo_test
