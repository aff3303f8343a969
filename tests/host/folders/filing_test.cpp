#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <set>

#include "host/folders/filing.h"
#include "tests/host/mail/mail_folder_fixture.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

const std::string kFrom = "From a@example.org Mon Jan  1 00:00:00 2024\n";

class HostFiling : public MailFolderTest {
 protected:
  // "in" with two files, "list.mbox" with three mails, an empty "out" and an empty mbox.
  void SetUp() override {
    MailFolderTest::SetUp();
    Write("in/a.eml", "Subject: a\n\none\n");
    Write("in/b.eml", kFrom + "Subject: b\n\n>From here\n");
    Write("list.mbox", kFrom + "Subject: m1\n\n>From x\n\n" + kFrom +
                           "From: B <b@example.org>\nDate: Mon, 2 Jun 2025 09:00:00 +0000\n\nm2\n\n" + kFrom +
                           "Subject: m3\n\nm3\n");
    Write("empty.mbox", "");
    fs::create_directories(root_ / "out");
    ASSERT_EQ(store_.Add(root_), std::nullopt);
    ASSERT_EQ(store_.mails().size(), 5u);
  }

  std::size_t Folder(const std::string& path) const {
    for (std::size_t i = 0; i < store_.folders().size(); ++i) {
      if (store_.PathInTree(i) == path) return i;
    }
    ADD_FAILURE() << path;
    return 0;
  }
  std::string Source(std::size_t mail) const {
    return store_.mails()[mail].source.lexically_relative(root_).generic_string();
  }
  // The mail's bytes where its file says that it stands.
  std::string OnDisk(std::size_t mail) const {
    return Read(Source(mail)).substr(store_.mails()[mail].offset);
  }

  // Numbers of the mails, in the order of reading.
  enum : std::size_t { kM1, kM2, kM3, kA, kB };
  MailStore store_;
};

TEST_F(HostFiling, AFileIsRenamed) {
  const Filed filed = MoveMails(store_, std::vector{std::size_t{kA}, std::size_t{kB}}, Folder("out"));
  EXPECT_EQ(filed.failure, "");
  EXPECT_EQ(filed.mails, (std::vector<std::size_t>{kA, kB}));
  EXPECT_EQ(Files(), "empty.mbox list.mbox out/a.eml out/b.eml");
  EXPECT_EQ(Read("out/b.eml"), kFrom + "Subject: b\n\n>From here\n") << "the file as it was";
  EXPECT_EQ(Source(kB), "out/b.eml");
  EXPECT_EQ(OnDisk(kB), "Subject: b\n\n>From here\n");
  EXPECT_EQ(store_.mails()[kB].folder, Folder("out"));
}

TEST_F(HostFiling, AFileOfAnotherKindOfNameIsReadAgainWhereItWent) {
  Write("letter.txt", "Subject: letter\n\nx\n");
  Write("loud.EML", "Subject: loud\n\nx\n");
  MailStore store;
  ASSERT_EQ(store.Add(root_ / "letter.txt"), std::nullopt);
  ASSERT_EQ(store.Add(root_ / "loud.EML"), std::nullopt);
  ASSERT_EQ(store.Add(root_ / "in"), std::nullopt);
  const std::size_t in = store.folders().size() - 1;
  ASSERT_EQ(MoveMails(store, std::vector{std::size_t{0}, std::size_t{1}}, in).failure, "");
  EXPECT_EQ(Files(), "empty.mbox in/a.eml in/b.eml in/letter.txt.eml in/loud.EML list.mbox");
  MailStore again;
  ASSERT_EQ(again.Add(root_ / "in"), std::nullopt);
  EXPECT_EQ(again.mails().size(), 4u);
}

TEST_F(HostFiling, ANameInUseGetsANumber) {
  Write("out/a.eml", "another");
  Write("out/a (2).eml", "one more");
  EXPECT_EQ(MoveMails(store_, std::vector{std::size_t{kA}}, Folder("out")).failure, "");
  EXPECT_EQ(Source(kA), "out/a (3).eml");
  EXPECT_EQ(Read("out/a.eml") + Read("out/a (2).eml"), "anotherone more");
}

TEST_F(HostFiling, ManyMailsOfOneNameAreAllKept) {
  for (int i = 0; i < 40; ++i) {
    EXPECT_EQ(CopyMails(store_, std::vector{std::size_t{kM2}}, Folder("out")).failure, "");
  }
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(root_ / "out"))
    names.insert(entry.path().filename().string());
  EXPECT_EQ(names.size(), 40u);
  EXPECT_TRUE(names.contains("20250602-090000.eml"));
  EXPECT_TRUE(names.contains("20250602-090000 (40).eml"));
}

TEST_F(HostFiling, AMailOfAnMboxIsLeftOutOfIt) {
  const Filed filed = MoveMails(store_, std::vector{std::size_t{kM3}, std::size_t{kM1}}, Folder("out"));
  EXPECT_EQ(filed.failure, "");
  const std::string left = kFrom + "From: B <b@example.org>\nDate: Mon, 2 Jun 2025 09:00:00 +0000\n\nm2\n\n";
  EXPECT_EQ(Read("list.mbox"), left);
  EXPECT_EQ(OnDisk(kM2).substr(0, 4), "From") << "its new place is known";
  EXPECT_EQ(Read(Source(kM1)), "Subject: m1\n\nFrom x\n") << "quoting undone";
  EXPECT_EQ(Source(kM3), "out/19700101-000000.eml") << "no date";
  EXPECT_EQ(Source(kM1), "out/19700101-000000 (2).eml");
  // The last one too: an empty file stands for an empty folder.
  EXPECT_EQ(MoveMails(store_, std::vector{std::size_t{kM2}}, Folder("out")).failure, "");
  EXPECT_EQ(Source(kM2), "out/20250602-090000.eml");
  EXPECT_EQ(Read("list.mbox"), "");
}

// The program is killed as soon as the first mail shows in its new folder: the mbox without the mails lies ready then.
TEST_F(HostFiling, NothingShowsInTheNewFolderBeforeTheMboxCanBeReplaced) {
  constexpr std::size_t kMails = 1000;
  std::string mbox;
  for (std::size_t i = 0; i < kMails; ++i) mbox += kFrom + "Subject: " + std::to_string(i) + "\n\nx\n\n";
  Write("big/big.mbox", mbox);
  fs::create_directories(root_ / "big/to");
  MailStore store;
  ASSERT_EQ(store.Add(root_ / "big"), std::nullopt);
  std::vector<std::size_t> all(kMails);
  for (std::size_t i = 0; i < kMails; ++i) all[i] = i;
  const std::size_t target = store.FolderAt(root_ / "big/to");
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    MoveMails(store, all, target);
    _exit(0);
  }
  const auto shown = [this] {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(root_ / "big/to"))
      count += entry.path().extension() == ".eml" ? 1 : 0;
    return count;
  };
  while (shown() == 0 && waitpid(child, nullptr, WNOHANG) == 0) continue;
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_GT(shown(), 0u);
  EXPECT_TRUE(fs::exists(root_ / "big/big.mbox.new") || Read("big/big.mbox").empty());
  EXPECT_GE(shown() + SplitMbox(Read("big/big.mbox")).size(), kMails) << "none is lost";
}

TEST_F(HostFiling, ANameThatIsBeingWrittenIsNotTaken) {
  Write("out/20250602-090000.eml.new", "of another program");
  EXPECT_EQ(MoveMails(store_, std::vector{std::size_t{kM2}}, Folder("out")).failure, "");
  EXPECT_EQ(Source(kM2), "out/20250602-090000 (2).eml");
  EXPECT_EQ(Read("out/20250602-090000.eml.new"), "of another program");
}

TEST_F(HostFiling, ManyMailsOfOneDateLeaveAnMboxTogether) {
  for (const std::size_t mail : {kM1, kM2, kM3}) {
    EXPECT_EQ(CopyMails(store_, std::vector{mail}, Folder("empty.mbox")).failure, "");
  }
  const Filed filed = MoveMails(store_, std::vector<std::size_t>{5, 6, 7}, Folder("out"));
  EXPECT_EQ(filed.failure, "");
  EXPECT_EQ(Files(),
            "empty.mbox in/a.eml in/b.eml list.mbox out/19700101-000000 (2).eml out/19700101-000000.eml "
            "out/20250602-090000.eml");
  EXPECT_EQ(MoveMails(store_, std::vector<std::size_t>{7, 5, 6}, Folder("empty.mbox")).failure, "");
  EXPECT_EQ(SplitMbox(Read("empty.mbox")).size(), 3u);
  EXPECT_EQ(MoveMails(store_, std::vector<std::size_t>{5, 6, 7}, Folder("list.mbox")).failure, "");
  EXPECT_EQ(SplitMbox(Read("list.mbox")).size(), 6u);
  EXPECT_EQ(OnDisk(5).substr(0, 11), "Subject: m1");
  EXPECT_EQ(OnDisk(7).substr(0, 11), "Subject: m3");
}

TEST_F(HostFiling, AMailIsAddedToAnMbox) {
  EXPECT_EQ(MoveMails(store_, std::vector{std::size_t{kB}, std::size_t{kM2}}, Folder("empty.mbox")).failure,
            "");
  EXPECT_EQ(Read("empty.mbox"),
            "From unknown Thu Jan  1 00:00:00 1970\r\nSubject: b\n\n>From here\n\r\n"
            "From b@example.org Mon Jun  2 09:00:00 2025\r\nFrom: B <b@example.org>\n"
            "Date: Mon, 2 Jun 2025 09:00:00 +0000\n\nm2\n\r\n");
  EXPECT_EQ(OnDisk(kM2).substr(0, 7), "From: B");
  EXPECT_EQ(OnDisk(kB).substr(0, 10), "Subject: b");
  EXPECT_EQ(Files(), "empty.mbox in/a.eml list.mbox");
  // What was written is read back.
  MailStore again;
  EXPECT_EQ(again.Add(root_ / "empty.mbox"), std::nullopt);
  ASSERT_EQ(again.mails().size(), 2u);
  EXPECT_EQ(again.mails()[0].raw, "Subject: b\n\nFrom here\n");
  EXPECT_EQ(again.mails()[1].offset, store_.mails()[kM2].offset);
}

TEST_F(HostFiling, AnMboxWithoutALastLineEndGetsOne) {
  EXPECT_EQ(MoveMails(store_, std::vector{std::size_t{kA}}, Folder("list.mbox")).failure, "");
  EXPECT_EQ(SplitMbox(Read("list.mbox")).size(), 4u);
  EXPECT_EQ(OnDisk(kA), "Subject: a\n\none\n\r\n");
}

TEST_F(HostFiling, AMailGoesThereAndBackAgain) {
  for (const char* bytes : {"Subject: lf\n\nx\n", "Subject: none\n\nx", "Subject: crlf\r\n\r\nx\r\n\r\n", "",
                            "From: \"a\r\n b\" <c\r\n d@e>\r\n\r\n>From me\r\n"}) {
    store_.mails()[kA].raw = bytes;
    store_.mails()[kA].place = MailPlace::kMemory;
    for (const char* target : {"list.mbox", "empty.mbox", "list.mbox", "out", "in"}) {
      EXPECT_EQ(MoveMails(store_, std::vector{std::size_t{kA}}, Folder(target)).failure, "")
          << bytes << target;
    }
    EXPECT_EQ(SplitMbox(Read("list.mbox")).size(), 3u) << bytes;
    EXPECT_EQ(Read("empty.mbox"), "") << bytes;
    EXPECT_EQ(OnDisk(kA).substr(0, std::string(bytes).size()), bytes);
  }
}

TEST_F(HostFiling, ACopyIsAMailOfItsOwn) {
  const Filed filed = CopyMails(store_, std::vector{std::size_t{kA}, std::size_t{kM1}}, Folder("in"));
  EXPECT_EQ(filed.failure, "");
  ASSERT_EQ(store_.mails().size(), 7u);
  EXPECT_EQ(Source(5), "in/a (2).eml");
  EXPECT_EQ(Read("in/a (2).eml"), Read("in/a.eml"));
  EXPECT_EQ(Read(Source(6)), "Subject: m1\n\nFrom x\n");
  EXPECT_EQ(SplitMbox(Read("list.mbox")).size(), 3u);
}

TEST_F(HostFiling, WhatIsErasedIsGone) {
  EXPECT_EQ(EraseMails(store_, std::vector{std::size_t{kA}, std::size_t{kM1}, std::size_t{kM2}}).failure, "");
  EXPECT_EQ(Files(), "empty.mbox in/b.eml list.mbox");
  EXPECT_EQ(SplitMbox(Read("list.mbox")).size(), 1u);
  EXPECT_EQ(OnDisk(kM3), "Subject: m3\n\nm3\n");
}

TEST(HostMboxSpans, AFileWithoutSomeSpansKeepsTheRest) {
  const std::string bytes = "junk\n\n" + kFrom + "one\n\n" + kFrom + "two\n\n" + kFrom + "three";
  const std::vector<MboxSpan> spans = MboxSpans(bytes);
  ASSERT_EQ(spans.size(), 3u);
  EXPECT_EQ(WithoutSpans(bytes, std::vector{spans[0], spans[2]}), "junk\n\n" + kFrom + "two\n\n");
  EXPECT_EQ(WithoutSpans(bytes, {}), bytes);
  EXPECT_EQ(MailOfSpan(bytes, spans[2]), "three");
}

TEST(HostMboxSpans, AnEmptyLineStandsBeforeAFromLine) {
  const struct {
    const char* ending;
    const char* separator;
  } cases[] = {{"", ""},      {"x", "\r\n\r\n"}, {"x\n", "\r\n"}, {"x\r\n", "\r\n"},
               {"x\n\n", ""}, {"\r\n\r\n", ""},  {"\n\r\n", ""}};
  for (const auto& c : cases) EXPECT_EQ(MboxSeparator(c.ending), c.separator) << c.ending;
}

// --- What cannot be done ---

TEST_F(HostFiling, AMailStaysWhenItsNewFolderIsGone) {
  fs::remove(root_ / "out");
  const Filed filed = MoveMails(store_, std::vector{std::size_t{kA}, std::size_t{kM1}}, Folder("out"));
  EXPECT_EQ(filed.failure, "cannot write " + (root_ / "out/a.eml").string() + ": there is no folder " +
                               (root_ / "out").string());
  EXPECT_TRUE(filed.mails.empty());
  EXPECT_EQ(Files(), "empty.mbox in/a.eml in/b.eml list.mbox");
  EXPECT_EQ(SplitMbox(Read("list.mbox")).size(), 3u);
  EXPECT_EQ(store_.mails()[kA].folder, Folder("in"));
  EXPECT_EQ(store_.mails()[kM1].folder, Folder("list.mbox"));
}

TEST_F(HostFiling, ACopyIsTakenBackWhenTheMboxCannotBeRewritten) {
  const std::string before = Read("list.mbox");
  fs::create_directories(root_ / "list.mbox.new/in the way");
  for (const char* target : {"out", "empty.mbox"}) {
    const Filed filed = MoveMails(store_, std::vector{std::size_t{kM1}, std::size_t{kM2}}, Folder(target));
    EXPECT_EQ(filed.failure, "cannot write " + (root_ / "list.mbox").string() + ": a folder is in the way")
        << target;
    EXPECT_EQ(Files(), "empty.mbox in/a.eml in/b.eml list.mbox") << target;
    EXPECT_EQ(Read("empty.mbox"), "") << target;
    EXPECT_EQ(Read("list.mbox"), before) << target;
    EXPECT_EQ(Source(kM1), "list.mbox") << target;
  }
}

TEST_F(HostFiling, AnMboxThatChangedMeanwhileIsLeftAlone) {
  const std::string other = kFrom + "Subject: new\n\nnew\n\n" + Read("list.mbox");
  Write("list.mbox", other);
  const Filed filed = MoveMails(store_, std::vector{std::size_t{kM1}}, Folder("out"));
  EXPECT_EQ(filed.failure, (root_ / "list.mbox").string() + " was changed since it was read");
  EXPECT_EQ(Read("list.mbox"), other);
  EXPECT_EQ(Files(), "empty.mbox in/a.eml in/b.eml list.mbox");
}

TEST_F(HostFiling, WhatCanBeDoneIsDone) {
  fs::remove(root_ / "in/a.eml");
  const Filed filed = MoveMails(store_, std::vector{std::size_t{kA}, std::size_t{kB}}, Folder("out"));
  EXPECT_EQ(filed.failure, "cannot read " + (root_ / "in/a.eml").string() + ": no such file or folder");
  EXPECT_EQ(filed.mails, std::vector<std::size_t>{kB});
  EXPECT_EQ(Files(), "empty.mbox list.mbox out/b.eml");
}

TEST_F(HostFiling, AReadOnlyStoreChangesInMemoryAlone) {
  store_.set_read_only(true);
  const std::string before = Files() + Read("list.mbox");
  EXPECT_EQ(MoveMails(store_, std::vector{std::size_t{kA}, std::size_t{kM1}}, Folder("out")).failure, "");
  EXPECT_EQ(CopyMails(store_, std::vector{std::size_t{kB}}, Folder("empty.mbox")).failure, "");
  EXPECT_EQ(EraseMails(store_, std::vector{std::size_t{kM2}}).failure, "");
  EXPECT_EQ(Files() + Read("list.mbox"), before);
  EXPECT_EQ(store_.mails()[kA].folder, Folder("out"));
  EXPECT_EQ(store_.mails().size(), 6u);
}

// --- Adding that is interrupted ---

TEST_F(HostFiling, AHalfMailThatAnEndedProgramAddedIsTakenBack) {
  const std::string whole = kFrom + "Subject: whole\n\nwhole\n\n";
  const std::string added = kFrom + "Subject: added\n\n" + std::string(1000, 'x') + "\n\n";
  struct Case {
    std::string behind;  // the mails that were there
    std::string left;    // of the mbox
    const char* why;
  };
  const Case cases[] = {
      {added.substr(0, 200), whole, "half of it"},
      {added, whole, "all of it: the mail lies where it came from too"},
      {"", whole, "nothing yet"},
      {added.substr(0, 200) + kFrom + "Subject: other\n\ny\n",
       whole + added.substr(0, 200) + kFrom + "Subject: other\n\ny\n", "another program has gone on"},
  };
  for (const Case& row : cases) {
    Write("add/box.mbox", whole + row.behind);
    Write("add/box.mbox.adding", std::to_string(whole.size()) + "\n" + added);
    MailStore seen;
    seen.set_read_only(true);
    ASSERT_EQ(seen.Add(root_ / "add"), std::nullopt);
    EXPECT_EQ(seen.mails().size(), SplitMbox(row.left).size()) << "read only: " << row.why;
    EXPECT_EQ(Read("add/box.mbox"), whole + row.behind) << "read only: " << row.why;
    MailStore store;
    ASSERT_EQ(store.Add(root_ / "add"), std::nullopt);
    EXPECT_EQ(store.mails().size(), SplitMbox(row.left).size()) << row.why;
    EXPECT_EQ(Read("add/box.mbox"), row.left) << row.why;
    EXPECT_FALSE(fs::exists(root_ / "add/box.mbox.adding")) << row.why;
    const bool cut = row.left.size() < whole.size() + row.behind.size();
    EXPECT_EQ(store.skipped().size(), cut ? 1u : 0u) << row.why;
  }
}

TEST_F(HostFiling, AProgramThatIsKilledWhileItAddsLeavesNoHalfMail) {
  constexpr std::size_t kSize = 30'000'000;
  Write("kill/big.eml", "Subject: big\n\n" + std::string(kSize, 'x') + "\n");
  const std::string before = kFrom + "Subject: m\n\nm\n\n";
  Write("kill/box.mbox", before);
  MailStore store;
  ASSERT_EQ(store.Add(root_ / "kill"), std::nullopt);
  const std::size_t big = store.mails()[0].raw.size() > kSize ? 0 : 1;
  const pid_t child = fork();
  if (child == 0) {
    CopyMails(store, std::span(&big, 1), store.mails()[1 - big].folder);
    _exit(0);
  }
  while (fs::file_size(root_ / "kill/box.mbox") == before.size() && waitpid(child, nullptr, WNOHANG) == 0)
    continue;
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  MailStore again;
  ASSERT_EQ(again.Add(root_ / "kill"), std::nullopt);
  for (const StoredMail& mail : again.mails())
    EXPECT_TRUE(mail.raw.size() < 100 || mail.raw.size() > kSize) << "half a mail: " << mail.raw.size();
}

// --- Files that others changed ---

TEST_F(HostFiling, AFileThatAnotherProgramReplacedIsLeftAlone) {
  Write("in/a.eml", "Subject: another mail\n\nnobody has read this\n");
  Write("in/b.eml", kFrom + "Subject: b\n\nother\n");
  const std::vector<std::size_t> both{kA, kB};
  for (const Filed& filed :
       {MoveMails(store_, both, Folder("out")), MoveMails(store_, both, Folder("empty.mbox")),
        CopyMails(store_, both, Folder("out")), EraseMails(store_, both)}) {
    EXPECT_EQ(filed.failure, (root_ / "in/a.eml").string() + " was changed since it was read");
    EXPECT_EQ(filed.mails, std::vector<std::size_t>{});
  }
  EXPECT_EQ(Files(), "empty.mbox in/a.eml in/b.eml list.mbox");
  EXPECT_EQ(Read("empty.mbox"), "");
}

}  // namespace
}  // namespace wrenfold
