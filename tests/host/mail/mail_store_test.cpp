#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "host/base/paths.h"
#include "host/mail/mail_store.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

// A folder of its own for each test.
class HostMailStore : public testing::Test {
 protected:
  void SetUp() override {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    root_ = fs::temp_directory_path() / ("wrenfold-" + std::to_string(getpid()) + "-" + info->name());
    fs::create_directories(root_);
  }
  void TearDown() override { fs::remove_all(root_); }

  fs::path Write(const std::string& utf8_name, const std::string& bytes) {
    const fs::path path = root_ / PathFromUtf8(utf8_name);
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }

  // The mails as "folder/first line", joined by blanks.
  static std::string Listed(const MailStore& store) {
    std::string listed;
    for (const StoredMail& mail : store.mails()) {
      if (!listed.empty()) listed += ' ';
      listed += store.folders()[mail.folder].name + '/' + mail.raw.substr(0, mail.raw.find_first_of("\r\n"));
    }
    return listed;
  }

  fs::path root_;
};

TEST_F(HostMailStore, AFileIsOneMail) {
  const fs::path file = Write("box/one.eml", "Subject: x\r\n\r\nbody\r\n");
  MailStore store;
  EXPECT_EQ(store.Add(file), std::nullopt);
  ASSERT_EQ(store.mails().size(), 1u);
  EXPECT_EQ(store.mails()[0].raw, "Subject: x\r\n\r\nbody\r\n");
  EXPECT_EQ(store.mails()[0].source, file);
  EXPECT_EQ(store.mails()[0].offset, 0u);
  EXPECT_EQ(store.mails()[0].flags, 0u);
  EXPECT_EQ(store.folders().at(0).name, "box");
  EXPECT_EQ(store.folders().at(0).path, root_ / "box");
}

TEST_F(HostMailStore, ATreeIsReadInOrderAllTheWayDown) {
  Write("b.eml", "b");
  Write("a.EML", "a");
  Write("readme.md", "no mail");
  Write("list.mbox", "From x Mon Jan  1 00:00:00 2024\nm1\n\nFrom x Mon Jan  1 00:01:00 2024\nm2\n");
  Write("sub/c.eml", "c");
  Write("sub/deeper/d.eml", "d");
  Write("another/e.eml", "e");
  Write(".hidden/f.eml", "f");
  fs::create_directories(root_ / "empty");
  Write("used-up.mbox", "");
  fs::create_directory_symlink(root_, root_ / "sub/back");
  MailStore store;
  EXPECT_EQ(store.Add(root_ / ""), std::nullopt) << "a slash at the end";
  const std::string top = root_.filename().string();
  EXPECT_EQ(Listed(store), top + "/a " + top + "/b list/m1 list/m2 another/e sub/c deeper/d");
  std::string folders;
  for (std::size_t i = 0; i < store.folders().size(); ++i) folders += store.PathInTree(i) + " ";
  EXPECT_EQ(folders, ". list.mbox used-up.mbox another empty sub sub/deeper ") << "those without mails too";
  EXPECT_TRUE(store.skipped().empty()) << "what filing leaves of an mbox is no broken one";
}

TEST_F(HostMailStore, WhereMailsWaitIsNoFolderOfMails) {
  Write("tree/a.eml", "a\r\n");
  Write("tree/in/b.eml", "b\r\n");
  Write("tree/server/c.eml", "c\r\n");
  Write("tree/in/Wrenfold/inbox/d.eml", "d\r\n");
  MailStore store;
  store.LeaveOut(root_ / "tree/in/../server");
  EXPECT_EQ(store.Add(root_ / "tree"), std::nullopt);
  EXPECT_EQ(Listed(store), "tree/a in/b");
  EXPECT_EQ(store.folders().size(), 2u);
  EXPECT_EQ(store.Add(root_ / "tree/in/Wrenfold"), std::nullopt) << "named itself";
  EXPECT_EQ(Listed(store), "tree/a in/b inbox/d");
}

TEST_F(HostMailStore, AFolderOfMailsIsKnownByAnyName) {
  Write("tree/a.eml", "a");
  Write("tree/sub/b.eml", "b");
  Write("tree/wrenfold/inbox/c.eml", "c");
  Write("alone/d.eml", "d");
  std::filesystem::create_directory_symlink(root_ / "tree", root_ / "link");
  MailStore store;
  EXPECT_EQ(store.Add(root_ / "tree"), std::nullopt);
  EXPECT_EQ(store.Add(root_ / "alone/d.eml"), std::nullopt);
  const struct {
    const char* path;
    const char* expected;
    const char* why;
  } cases[] = {
      {"tree", "tree", "the top"},
      {"tree/../tree/./sub/", "sub", "below it, by another name"},
      {"link/sub", "sub", "through a link"},
      {"link/new/deep", "tree", "what is not there yet would be read"},
      {"tree/wrenfold/inbox", "", "not looked at"},
      {"tree/wrenfold/new", "", "nor would that be"},
      {"tree/.hidden/new", "", "nor that"},
      {"alone", "alone", "a mail lies in it"},
      {"alone/new", "", "of a file that is named alone, folders beside it are not read"},
      {"elsewhere", "", "outside"},
  };
  for (const auto& c : cases) {
    const auto found = store.ReadsFrom(root_ / c.path);
    EXPECT_EQ(found ? store.folders()[*found].name : "", c.expected) << c.path << ": " << c.why;
  }
}

TEST_F(HostMailStore, ManyHalfWrittenFilesAreToldInOneLine) {
  Write("a.eml", "a");
  for (int i = 0; i < 9; ++i) Write("b" + std::to_string(i) + ".eml.new", "b");
  MailStore store;
  EXPECT_EQ(store.Add(root_), std::nullopt);
  ASSERT_EQ(store.skipped().size(), 1u);
  EXPECT_NE(store.skipped()[0].find(" and 6 more were left "), std::string::npos) << store.skipped()[0];
  store.ReadAgain(0);
  Write("other/c.eml", "c");
  EXPECT_EQ(store.Add(root_ / "other"), std::nullopt);
  EXPECT_EQ(store.skipped().size(), 1u) << "once";
}

TEST_F(HostMailStore, AnMboxWithoutMailsIsAnEmptyFolder) {
  MailStore store;
  EXPECT_EQ(store.Add(Write("used-up.mbox", "")), std::nullopt);
  EXPECT_TRUE(store.mails().empty());
  ASSERT_EQ(store.folders().size(), 1u);
  EXPECT_EQ(store.folders()[0].name, "used-up");
  EXPECT_EQ(store.Add(Write("empty.eml", "")),
            "cannot read " + (root_ / "empty.eml").string() + ": the file is empty");
}

TEST_F(HostMailStore, AFileIsReadOnceHoweverItIsNamed) {
  Write("a.eml", "a");
  Write("sub/b.eml", "b");
  MailStore store;
  EXPECT_EQ(store.Add(root_ / "sub"), std::nullopt);
  EXPECT_EQ(store.Add(root_), std::nullopt);
  EXPECT_EQ(store.Add(root_ / "sub/../a.eml"), std::nullopt);
  EXPECT_EQ(store.Add(root_ / "sub/.."), std::nullopt);
  EXPECT_EQ(Listed(store), "sub/b " + root_.filename().string() + "/a");
  EXPECT_EQ(store.folders().size(), 2u);
  EXPECT_EQ(store.trees().size(), 2u) << "the folder above is a tree of its own";
}

TEST_F(HostMailStore, AFolderIsReadAgain) {
  Write("a.eml", "a");
  Write("b.eml", "b");
  const std::string from = "From a@example.org Mon Jan  1 00:00:00 2024\n";
  Write("list.mbox", from + "m1\n\n" + from + "m2\n\n" + from + "m3\n");
  MailStore store;
  ASSERT_EQ(store.Add(root_), std::nullopt);
  fs::remove(root_ / "a.eml");
  Write("c.eml", "c");
  Write("list.mbox", from + "m0\n\n" + from + "m3\n\n" + from + "m1\n");
  const MailStore::Changes files = store.ReadAgain(0);
  EXPECT_EQ(files.failure, "");
  EXPECT_EQ(files.gone, std::vector<std::size_t>{0});
  EXPECT_EQ(files.added, 1u);
  EXPECT_EQ(store.mails().back().raw, "c");
  const MailStore::Changes mbox = store.ReadAgain(1);
  EXPECT_EQ(mbox.gone, std::vector<std::size_t>{3}) << "m2";
  EXPECT_EQ(mbox.added, 1u);
  EXPECT_EQ(store.mails().back().raw, "m0\n");
  EXPECT_EQ(store.mails()[4].offset, 2 * from.size() + 4) << "m3 stands at another place";
  EXPECT_EQ(store.ReadAgain(1).added, 0u) << "nothing changed since";
  fs::remove(root_ / "list.mbox");
  EXPECT_EQ(store.ReadAgain(1).failure,
            "cannot read " + (root_ / "list.mbox").string() + ": no such file or folder");
}

TEST_F(HostMailStore, AFolderThatCannotBeReadKeepsItsMails) {
  Write("a/1.eml", "m1");
  MailStore store;
  ASSERT_EQ(store.Add(root_ / "a"), std::nullopt);
  const fs::path away = root_ / "away";
  fs::rename(root_ / "a", away);
  const MailStore::Changes changes = store.ReadAgain(0);
  EXPECT_NE(changes.failure, "");
  EXPECT_TRUE(changes.gone.empty());
  EXPECT_EQ(store.mails()[0].place, MailPlace::kFile);
  fs::rename(away, root_ / "a");
  EXPECT_EQ(store.ReadAgain(0).failure, "");
  EXPECT_EQ(store.mails().size(), 1u) << "not read as a new one";
}

TEST_F(HostMailStore, AMailIsMissedByAnyNameOfItsFolder) {
  Write("a/1.eml", "m1");
  Write("a/2.eml", "m2");
  Write("a/list.mbox", "");
  MailStore store;
  ASSERT_EQ(store.Add(root_ / "a" / "1.eml"), std::nullopt);
  ASSERT_EQ(store.Add(root_ / "a" / "list.mbox"), std::nullopt);
  const fs::path other = root_ / "a" / ".." / "a";
  ASSERT_EQ(store.Add(other / "2.eml"), std::nullopt);
  const std::string from = "From a@example.org Mon Jan  1 00:00:00 2024\n";
  Write("a/list.mbox", from + "m3\n");
  ASSERT_EQ(store.Add(other / "list.mbox"), std::nullopt);
  ASSERT_EQ(store.mails().size(), 3u);
  fs::remove(root_ / "a" / "2.eml");
  EXPECT_EQ(store.ReadAgain(0).gone, std::vector<std::size_t>{1});
  Write("a/list.mbox", "");
  EXPECT_EQ(store.ReadAgain(1).gone, std::vector<std::size_t>{2});
  Write("a/list.mbox", from + "m3\n");
  EXPECT_EQ(store.ReadAgain(1).added, 1u);
  EXPECT_EQ(store.ReadAgain(1).added, 0u);
}

TEST_F(HostMailStore, WhatTookThePlaceOfAMailIsNoMail) {
  Write("a.eml", "m1");
  const std::string from = "From a@example.org Mon Jan  1 00:00:00 2024\n";
  Write("list.mbox", from + "m2\n");
  MailStore store;
  ASSERT_EQ(store.Add(root_), std::nullopt);
  fs::remove(root_ / "a.eml");
  fs::create_directory(root_ / "a.eml");
  EXPECT_EQ(store.ReadAgain(0).gone, std::vector<std::size_t>{0});
  Write("list.mbox", "no mbox");
  const MailStore::Changes mbox = store.ReadAgain(1);
  EXPECT_TRUE(mbox.gone.empty());
  EXPECT_NE(mbox.failure.find("list.mbox"), std::string::npos) << mbox.failure;
}

TEST_F(HostMailStore, WhatCannotBeReadIsToldOnce) {
  Write("a.eml", "m1");
  Write("empty.eml", "");
  MailStore store;
  ASSERT_EQ(store.Add(root_), std::nullopt);
  ASSERT_EQ(store.skipped().size(), 1u);
  Write("later.eml", "");
  for (int n = 0; n < 3; ++n) EXPECT_EQ(store.ReadAgain(0).failure, "");
  EXPECT_EQ(store.skipped().size(), 2u);
}

TEST_F(HostMailStore, SeveralPathsShareTheirFolders) {
  MailStore store;
  EXPECT_EQ(store.Add(Write("f/b.eml", "b")), std::nullopt);
  EXPECT_EQ(store.Add(Write("g/c.eml", "c")), std::nullopt);
  EXPECT_EQ(store.Add(Write("f/a.eml", "a")), std::nullopt);
  EXPECT_EQ(Listed(store), "f/b g/c f/a");
  EXPECT_EQ(store.folders().size(), 2u);
}

TEST_F(HostMailStore, JapaneseNamesWork) {
  // "受信箱/メール.eml"
  const std::string folder = "\xE5\x8F\x97\xE4\xBF\xA1\xE7\xAE\xB1";
  const fs::path file = Write(folder + "/\xE3\x83\xA1\xE3\x83\xBC\xE3\x83\xAB.eml", "x");
  MailStore store;
  EXPECT_EQ(store.Add(root_), std::nullopt);
  EXPECT_EQ(Listed(store), folder + "/x");
  EXPECT_EQ(PathFromUtf8(PathToUtf8(file)), file);
}

TEST_F(HostMailStore, WhatCannotBeReadIsNamedWithItsReason) {
  Write("empty.eml", "");
  Write("bad.mbox", "Subject: x\n\n");
  Write("sub/readme.txt", "x");
  Write("mixed/a.eml", "a");
  Write("mixed/b.eml", "");
  mkfifo((root_ / "pipe.eml").c_str(), 0600);
  const struct {
    const char* name;
    const char* reason;
  } cases[] = {
      {"none.eml", "no such file or folder"},
      {"none/x.eml", "no such file or folder"},
      {"empty.eml/x.eml", "no such file or folder"},
      {"empty.eml", "the file is empty"},
      {"pipe.eml", "not a file"},
      {"bad.mbox", "an mbox file begins with a \"From \" line"},
      {"sub", "no .eml or .mbox file in this folder"},
  };
  MailStore store;
  for (const auto& c : cases) {
    EXPECT_EQ(store.Add(root_ / c.name), "cannot read " + (root_ / c.name).string() + ": " + c.reason);
  }
  EXPECT_EQ(store.Add(root_ / "mixed", MailStore::Unreadable::kRefuse),
            "cannot read " + (root_ / "mixed/b.eml").string() + ": the file is empty");
  EXPECT_TRUE(store.skipped().empty());
  EXPECT_TRUE(store.mails().empty()) << "nothing half done";
  EXPECT_TRUE(store.folders().empty());
}

TEST_F(HostMailStore, WhatCannotBeReadInAFolderIsSkippedAndNamed) {
  Write("a.eml", "a");
  Write("b.eml", "");
  Write("c.mbox", "no mbox");
  Write("d.eml", "d");
  Write("sub/e.eml", "");
  Write("sub/f.eml", "f");
  Write("sub/g.eml.new", "g");
  Write("sub/notes.new", "no mail");
  MailStore store;
  EXPECT_EQ(store.Add(root_), std::nullopt);
  const std::string top = root_.filename().string();
  EXPECT_EQ(Listed(store), top + "/a " + top + "/d sub/f");
  EXPECT_EQ(
      store.skipped(),
      (std::vector<std::string>{
          "cannot read " + (root_ / "b.eml").string() + ": the file is empty",
          "cannot read " + (root_ / "c.mbox").string() + ": an mbox file begins with a \"From \" line",
          "cannot read " + (root_ / "sub/e.eml").string() + ": the file is empty",
          (root_ / "sub/g.eml.new").string() +
              " was left by a write that was interrupted: it is no mail; look into it, then delete it"}));
  EXPECT_EQ(store.Add(root_ / "sub/e.eml"),
            "cannot read " + (root_ / "sub/e.eml").string() + ": the file is empty")
      << "a file that is asked for by name";
}

TEST_F(HostMailStore, AFolderOfWhichNothingCanBeReadIsRefused) {
  Write("b.eml", "");
  MailStore store;
  EXPECT_EQ(store.Add(root_), "cannot read " + (root_ / "b.eml").string() + ": the file is empty");
}

TEST_F(HostMailStore, AMailWithAFromLineStaysInItsFolder) {
  const std::string from = "From a@example.org Mon Jan  1 00:00:00 2024\n";
  Write("f/a.eml", from + "Subject: a\n\n>From here\n");
  Write("f/b.eml", "Subject: b\n\n");
  Write("f/c.eml", from + "Subject: c\n\n\n" + from + "Subject: d\n\n");
  MailStore store;
  EXPECT_EQ(store.Add(root_ / "f"), std::nullopt);
  EXPECT_EQ(Listed(store), "f/Subject: a f/Subject: b c/Subject: c c/Subject: d");
  EXPECT_EQ(store.mails()[0].raw, "Subject: a\n\nFrom here\n");
  EXPECT_EQ(store.mails()[0].offset, from.size());
}

TEST_F(HostMailStore, AFileWithoutPermissionIsNamed) {
  if (geteuid() == 0) GTEST_SKIP() << "root reads everything";
  const fs::path file = Write("closed.eml", "x");
  fs::permissions(file, fs::perms::none);
  MailStore store;
  EXPECT_EQ(store.Add(file), "cannot read " + file.string() + ": access denied");
}

struct MboxCase {
  std::string_view bytes;
  std::vector<std::string> mails;
  const char* why;
};

TEST(HostMbox, MailsAreSplitAtFromLines) {
  const MboxCase cases[] = {
      {"From a 12:00\nA: 1\n\nx\n\nFrom b 12:01\nB: 2\n\ny\n", {"A: 1\n\nx\n", "B: 2\n\ny\n"}, "LF"},
      {"From a 12:00\r\nA\r\n\r\nx\r\n\r\nFrom b 12:01\r\nB",
       {"A\r\n\r\nx\r\n", "B"},
       "CR LF; no last line end"},
      {"From a 12:00\nA\n\nFrom here on\n", {"A\n\nFrom here on\n"}, "no time: a body line"},
      {"From a 12:00\nA\nFrom b 12:01\nB\n", {"A\nFrom b 12:01\nB\n"}, "no empty line before it"},
      {"From a 12:00\nA\n\n>From x\n>>From y\n>Fromage\n> From\n",
       {"A\n\nFrom x\n>From y\n>Fromage\n> From\n"},
       "quoting is undone, one level"},
      {"From a 12:00\n\nFrom b 12:01\n", {"\n", ""}, "mails without content"},
      {"From a 12:00\nA\nx\r\r\nFrom b 12:01\nB\n", {"A\nx\r", "B\n"}, "CR alone before the empty line"},
      {"junk\n\nFrom a 12:00\nA\n", {"A\n"}, "what stands before the first mail is dropped"},
      {"", {}, "nothing"},
  };
  for (const MboxCase& c : cases) {
    std::vector<std::string> mails;
    for (const StoredMail& mail : SplitMbox(c.bytes)) {
      mails.push_back(mail.raw);
      const std::string_view at_offset = c.bytes.substr(mail.offset);
      EXPECT_EQ(at_offset.substr(0, at_offset.find('\n')), mail.raw.substr(0, mail.raw.find('\n'))) << c.why;
    }
    EXPECT_EQ(mails, c.mails) << c.why;
  }
}

TEST(HostMbox, OnlyAFromLineWithATimeMakesAnMbox) {
  EXPECT_TRUE(IsMbox("From a@example.com Mon Jan  1 00:00:00 2024\nx"));
  EXPECT_TRUE(IsMbox("From - 12:00"));
  EXPECT_FALSE(IsMbox("From: a@example.com\nDate: 12:00\n"));
  EXPECT_FALSE(IsMbox("From here\n12:00"));
  EXPECT_FALSE(IsMbox("From 1:2 :34 12:"));
  EXPECT_FALSE(IsMbox(""));
}

}  // namespace
}  // namespace wrenfold
