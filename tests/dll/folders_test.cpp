// Choosing and deleting folders.
#include <gtest/gtest.h>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

TEST(Folders, SelectFolderSendsItsSubCommandAndThePair) {
  ScriptedHost host;
  host.Expect(8).Int(0).Text("inbox").Null().Answer(1);
  EXPECT_EQ(SelectFolder("inbox", nullptr), 1);
  host.Expect(8).Int(1).Text("group").Answer(1);
  EXPECT_EQ(SelectAccountGroup("group"), 1);
}

TEST(Folders, DeleteFolderAsksBeforeItDeletes) {
  ScriptedHost host;
  host.Expect(246).Text("a").Text("b").Answer(0);
  EXPECT_EQ(DeleteFolder("a", "b"), 0);
  host.Expect(246).Text("a").Text("b").Answer(1);
  host.Expect(260).Text("a").Text("b").Answer(7);
  EXPECT_EQ(DeleteFolder("a", "b"), 7);
  EXPECT_EQ(DeleteFolder("a", kNumberForText), 0);
  host.ExpectMessages({kStringMessageEnglish});
}

}  // namespace
}  // namespace wfinfo_test
