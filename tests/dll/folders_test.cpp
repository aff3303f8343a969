// Choosing and deleting folders, counting their mails, and the folder of information items.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"

namespace wfinfo_test {
namespace {

struct Word {
  const char* word;
  long long code;
};

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

TEST(FolderMailCount, EachKindBecomesItsCode) {
  ScriptedHost host;
  for (const Word& w : {Word{nullptr, 0},
                        {"recent", 1},
                        {"unread", 2},
                        {"mark", 3},
                        {"priority1", 4},
                        {"hot", 5},
                        {"HOT", 5},
                        {"", 0},
                        {"all", 0},
                        {"unread ", 0}}) {
    host.Expect(139).Text("A").Null().Int(w.code).Answer(0x123456789LL);
    EXPECT_EQ(GetFolderMailCount("A", nullptr, w.word), 0x123456789LL);
  }
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(GetFolderMailCount(bad, bad, bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(GetFolderMailCount("A", bad, bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(GetFolderMailCount(nullptr, nullptr, bad), 0); });
  }
}

TEST(FolderMailCount, ConcernsTheActiveFrame) {
  ScriptedHost host;
  host.SetActiveView(host.OpenOuterView());
  EXPECT_EQ(GetFolderMailCount(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(host.TakeMessages().size(), 1u);
}

TEST(InfoItems, TheFolderPairMayBeOmitted) {
  ScriptedHost host;
  host.Expect(200).Text("A").Text("B").Answer(4);
  EXPECT_EQ(SetInfoItemFolder("A", "B"), 4);
  host.Expect(200).Null().Null().Answer(4);
  EXPECT_EQ(SetInfoItemFolder(nullptr, nullptr), 4);
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetInfoItemFolder(bad, bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetInfoItemFolder(nullptr, bad), 0); });
  }
}

}  // namespace
}  // namespace wfinfo_test
