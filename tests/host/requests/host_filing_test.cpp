// What the mail list and the open mail do when mails are filed.
#include <gtest/gtest.h>

#include "host/files/whole_file.h"
#include "host/requests/host_state.h"
#include "tests/host/mail/mail_folder_fixture.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

class HostStateFiling : public MailFolderTest {
 protected:
  // Four mails in "in", none in "out".
  void SetUp() override {
    MailFolderTest::SetUp();
    for (const char* name : {"a", "b", "c", "d"})
      Write(std::string("in/") + name + ".eml", "Subject: " + std::string(name) + "\r\n\r\n");
    fs::create_directories(root_ / "out");
    ASSERT_EQ(state_.AddMails(root_, MailStore::Unreadable::kRefuse), std::nullopt);
    in_ = *state_.tree().Find("in", 0);
    out_ = *state_.tree().Find("out", 0);
  }

  // "a b [c] d @in": the list with the open mail, and the current folder.
  std::string Shown() {
    std::string shown;
    for (const std::size_t i : state_.MailsOf(state_.folder())) {
      const std::string subject = state_.Header(i, "Subject");
      shown += (i == state_.root() ? "[" + subject + "]" : subject) + " ";
    }
    return shown + "@" + state_.folders()[state_.folder()].name;
  }

  HostState state_;
  std::size_t in_ = 0;
  std::size_t out_ = 0;
};

TEST_F(HostStateFiling, TheFirstMailAndItsFolderAreOpen) { EXPECT_EQ(Shown(), "[a] b c d @in"); }

TEST_F(HostStateFiling, TheNextMailIsOpenedElseTheLast) {
  state_.Open(1);
  EXPECT_EQ(state_.MoveMails(std::vector<std::size_t>{1}, out_), "");
  EXPECT_EQ(Shown(), "a [c] d @in");
  EXPECT_EQ(state_.MoveMails(std::vector<std::size_t>{0}, out_), "");
  EXPECT_EQ(Shown(), "[c] d @in") << "another one left";
  EXPECT_EQ(state_.MoveMails(std::vector<std::size_t>{2, 3}, out_), "");
  EXPECT_EQ(Shown(), "@in") << "an empty folder stays the current one";
  EXPECT_FALSE(state_.HasRoot());
  state_.ShowFolder(out_);
  EXPECT_EQ(Shown(), "[a] b c d @out");
  state_.Open(3);
  EXPECT_EQ(state_.DeleteMails(std::vector<std::size_t>{3}), "");
  EXPECT_EQ(Shown(), "a b [c] @out") << "the last one has none behind it";
}

TEST_F(HostStateFiling, AnMboxIsReceivedMailByMail) {
  const std::string from = "From a@example.org Mon Jan  1 00:00:00 2024\n";
  const struct {
    std::string bytes;
    std::size_t mails;
    std::string reason;
  } cases[] = {{from + "Subject: one\n\n", 1, ""},
               {from + "Subject: one\n\n\n" + from + "Subject: two\n\n", 2, ""},
               {"Subject: none\n\n", 0, "an mbox file begins with a \"From \" line"},
               {"", 0, "the file is empty"}};
  for (const auto& [bytes, mails, reason] : cases) {
    Write("drop/new.mbox", bytes);
    const std::size_t before = state_.MailsOf(out_).size();
    const std::string failure = state_.Receive(root_ / "drop/new.mbox", out_, false);
    EXPECT_TRUE(reason.empty() ? failure.empty() : failure.ends_with(reason)) << failure;
    EXPECT_EQ(state_.MailsOf(out_).size(), before + mails) << bytes;
    EXPECT_EQ(fs::exists(root_ / "drop/new.mbox"), !reason.empty()) << "it goes when all came: " << bytes;
  }
  for (const auto& entry : fs::directory_iterator(root_ / "out")) EXPECT_EQ(entry.path().extension(), ".eml");
  fs::remove_all(root_ / "out");
  Write("drop/new.mbox", cases[1].bytes);
  EXPECT_NE(state_.Receive(root_ / "drop/new.mbox", out_, false), "");
  EXPECT_EQ(Read("drop/new.mbox"), cases[1].bytes) << "it stays whole when they cannot be written";
}

TEST_F(HostStateFiling, ADraftThatWasSentLeavesItsMboxAlsoWhenMailsAreOnlyRead) {
  const std::string from = "From a@example.org Mon Jan  1 00:00:00 2024\n";
  Write("d/d.mbox", from + "Subject: one\n\n\n" + from + "Subject: two\n\n");
  HostState state;
  state.set_read_only(true);
  ASSERT_EQ(state.AddMails(root_ / "d", MailStore::Unreadable::kRefuse), std::nullopt);
  EXPECT_EQ(state.TakeOutOfMbox(0), "");
  EXPECT_EQ(Read("d/d.mbox"), from + "Subject: two\n\n");
  EXPECT_TRUE(state.IsGone(0));
  EXPECT_TRUE(state.read_only());
  Write("d/d.mbox", from + "Subject: three\n\n");
  EXPECT_NE(state.TakeOutOfMbox(1), "") << "another program wrote there";
  EXPECT_FALSE(state.IsGone(1));
  EXPECT_EQ(Read("d/d.mbox"), from + "Subject: three\n\n");
}

TEST_F(HostStateFiling, FlagsAndColoursGoAlong) {
  state_.ChangeState(0, kStateMarked, kStateMarked);
  state_.set_colour(0, 3);
  EXPECT_EQ(state_.CopyMails(std::vector<std::size_t>{0}, out_), "");
  ASSERT_EQ(state_.mail_count(), 5u);
  EXPECT_NE(state_.StateWord(4) & kStateMarked, 0u);
  EXPECT_EQ(state_.colour(4), 3);
  EXPECT_EQ(Shown(), "[a] b c d @in");
}

TEST_F(HostStateFiling, WhatIsDeletedTwiceIsGone) {
  EXPECT_EQ(state_.DeleteMails(std::vector<std::size_t>{0, 1}), "");
  EXPECT_EQ(Shown(), "[c] d @in");
  EXPECT_EQ(Files(), "in/c.eml in/d.eml trash/a.eml trash/b.eml");
  state_.ShowFolder(*state_.tree().Find("trash", 0));
  EXPECT_EQ(state_.DeleteMails(std::vector<std::size_t>{0, 2}), "") << "one is in the trash, one is not";
  EXPECT_EQ(Shown(), "[b] c @trash");
  EXPECT_EQ(Files(), "in/d.eml trash/b.eml trash/c.eml");
  EXPECT_EQ(state_.MoveMails(std::vector<std::size_t>{0}, in_), "the mail lies in no folder");
  EXPECT_EQ(state_.DeleteMails(std::vector<std::size_t>{0}), "the mail lies in no folder");
  EXPECT_TRUE(state_.Open(0)) << "a locked selection may still name it";
  EXPECT_EQ(state_.folders()[state_.folder()].name, "trash");
}

TEST_F(HostStateFiling, WhatCannotBeFiledStaysOpen) {
  fs::remove(root_ / "out");
  EXPECT_EQ(
      state_.MoveMails(std::vector<std::size_t>{0}, out_),
      "cannot write " + (root_ / "out/a.eml").string() + ": there is no folder " + (root_ / "out").string());
  EXPECT_EQ(Shown(), "[a] b c d @in");
  Write("trash", "a file in the way");
  EXPECT_EQ(state_.DeleteMails(std::vector<std::size_t>{0}), "there is a file " + (root_ / "trash").string());
  EXPECT_EQ(Shown(), "[a] b c d @in");
  EXPECT_EQ(Files(), "in/a.eml in/b.eml in/c.eml in/d.eml trash");
}

TEST_F(HostStateFiling, ANewMailIsWritten) {
  EXPECT_EQ(state_.AddMail("Subject: new\r\n\r\n", out_, kMailRead), "");
  EXPECT_EQ(Read("out/19700101-000000.eml"), "Subject: new\r\n\r\n");
  ASSERT_EQ(state_.mail_count(), 5u);
  EXPECT_EQ(state_.StateWord(4) & kStateUnread, 0u);
  fs::remove_all(root_ / "out");
  EXPECT_EQ(state_.AddMail("Subject: lost\r\n\r\n", out_, 0),
            "cannot write " + (root_ / "out/19700101-000000.eml").string() + ": there is no folder " +
                (root_ / "out").string());
  EXPECT_EQ(state_.mail_count(), 5u);
}

TEST_F(HostStateFiling, ImportedMailsAreWritten) {
  std::vector<StoredMail> mails(2);
  mails[0].raw = "Subject: e\r\n\r\n";
  mails[1].raw = "Subject: f\r\n\r\n";
  EXPECT_EQ(state_.Import(mails, in_), "");
  EXPECT_EQ(Shown(), "[a] b c d e f @in");
  EXPECT_EQ(Read("in/19700101-000000.eml"), "Subject: e\r\n\r\n");
  EXPECT_EQ(Read("in/19700101-000000 (2).eml"), "Subject: f\r\n\r\n");
  state_.set_read_only(true);
  EXPECT_EQ(state_.Import(mails, out_), "");
  state_.ShowFolder(out_);
  EXPECT_EQ(Shown(), "[e] f @out") << "in memory alone";
  EXPECT_EQ(Files().find("out/"), std::string::npos);
}

class Receiving : public HostStateFiling {
 protected:
  void SetUp() override {
    HostStateFiling::SetUp();
    fs::create_directories(server_);
  }
  void TearDown() override {
    fs::remove_all(server_);
    HostStateFiling::TearDown();
  }
  fs::path Put(const std::string& name, const std::string& bytes) {
    ReplaceFile(server_ / name, bytes);
    return server_ / name;
  }
  const fs::path server_ =
      fs::temp_directory_path() /
      (std::string("server-") + testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(Receiving, MovesTheFileAndLeavesTheOneOfItsNameThere) {
  const fs::path file = Put("a.eml", "Subject: new\r\nStatus: RO\r\n\r\n");
  EXPECT_EQ(state_.Receive(file, in_, false), "");
  EXPECT_EQ(Shown(), "[a] b c d new @in");
  EXPECT_NE(state_.StateWord(4) & kStateUnread, 0u);
  EXPECT_EQ(Read("in/a (2).eml"), "Subject: new\r\nStatus: RO\r\n\r\n");
  EXPECT_EQ(Read("in/a.eml"), "Subject: a\r\n\r\n");
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(Receiving, CopiesWhatStaysOnTheServer) {
  const fs::path file = Put("e.eml", "Subject: e\r\n\r\n");
  EXPECT_EQ(state_.Receive(file, in_, true), "");
  EXPECT_EQ(Shown(), "[a] b c d e @in");
  EXPECT_EQ(Read("in/e.eml"), "Subject: e\r\n\r\n");
  EXPECT_TRUE(fs::exists(file));
}

TEST_F(Receiving, TakesSeveralMailsOutOfOneFile) {
  const std::string from = "From a@x Mon Jun  2 09:00:00 2025\n";
  const fs::path file = Put("two.eml", from + "Subject: e\n\n\n" + from + "Subject: f\n\n\n");
  EXPECT_EQ(state_.Receive(file, in_, false), "");
  EXPECT_EQ(Shown(), "[a] b c d e f @in");
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(Receiving, AddsToAnMbox) {
  Write("box.mbox", "From a@x Mon Jun  2 09:00:00 2025\nSubject: old\n\n");
  ASSERT_EQ(state_.AddMails(root_ / "box.mbox", MailStore::Unreadable::kRefuse), std::nullopt);
  const std::size_t box = *state_.tree().Find("box", 0);
  EXPECT_EQ(state_.Receive(Put("e.eml", "Subject: e\r\n\r\n"), box, false), "");
  state_.ShowFolder(box);
  EXPECT_EQ(Shown(), "[old] e @box");
  EXPECT_NE(Read("box.mbox").find("Subject: e\r\n"), std::string::npos);
}

TEST_F(Receiving, WhatCannotBeReceivedStaysAndIsTold) {
  const fs::path empty = Put("empty.eml", "");
  EXPECT_EQ(state_.Receive(empty, in_, false), "cannot read " + empty.string() + ": the file is empty");
  const fs::path none = server_ / "none.eml";
  EXPECT_EQ(state_.Receive(none, in_, false), "cannot read " + none.string() + ": no such file or folder");
  const fs::path file = Put("e.eml", "Subject: e\r\n\r\n");
  fs::remove(root_ / "out");
  EXPECT_EQ(state_.Receive(file, out_, false), "cannot write " + (root_ / "out/e.eml").string() +
                                                   ": there is no folder " + (root_ / "out").string());
  EXPECT_EQ(state_.mail_count(), 4u);
  EXPECT_TRUE(fs::exists(file));
  EXPECT_TRUE(fs::exists(empty));
}

TEST_F(Receiving, LeavesTheServerAloneWhenReadOnly) {
  const fs::path file = Put("e.eml", "Subject: e\r\n\r\n");
  state_.set_read_only(true);
  EXPECT_EQ(state_.Receive(file, in_, false), "");
  EXPECT_EQ(Shown(), "[a] b c d e @in");
  EXPECT_TRUE(fs::exists(file));
  EXPECT_EQ(Files(), "in/a.eml in/b.eml in/c.eml in/d.eml");
}

TEST_F(Receiving, MakesAFolderForTheFirstMail) {
  HostState state;
  const std::size_t folder = state.FolderAt(root_ / "out");
  EXPECT_EQ(state.Receive(Put("e.eml", "Subject: e\r\n\r\n"), folder, false), "");
  ASSERT_TRUE(state.HasRoot());
  EXPECT_EQ(state.Header(state.root(), "Subject"), "e");
  EXPECT_EQ(Read("out/e.eml"), "Subject: e\r\n\r\n");
  EXPECT_EQ(state.tree().SetProperty(folder, "icon", "1"), std::nullopt) << "its tree is known";
}

TEST_F(Receiving, OpensTheFirstMailOfAnEmptyFolderThatShows) {
  state_.ShowFolder(out_);
  ASSERT_FALSE(state_.HasRoot());
  EXPECT_EQ(state_.Receive(Put("e.eml", "Subject: e\r\n\r\n"), out_, false), "");
  EXPECT_EQ(state_.Receive(Put("f.eml", "Subject: f\r\n\r\n"), out_, false), "");
  EXPECT_EQ(Shown(), "[e] f @out");
}

TEST_F(Receiving, OpensNothingOfAFolderThatDoesNotShow) {
  state_.ShowFolder(out_);
  EXPECT_EQ(state_.Receive(Put("e.eml", "Subject: e\r\n\r\n"), in_, false), "");
  EXPECT_FALSE(state_.HasRoot());
}

TEST_F(HostStateFiling, AFolderIsReadAgain) {
  Write("in/e.eml", "Subject: e\r\n\r\n");
  fs::remove(root_ / "in/a.eml");
  EXPECT_EQ(state_.Refresh(in_), std::nullopt);
  EXPECT_EQ(Shown(), "[b] c d e @in");
  state_.ShowFolder(out_);
  Write("out/f.eml", "Subject: f\r\n\r\n");
  EXPECT_EQ(state_.Refresh(out_), std::nullopt);
  EXPECT_EQ(Shown(), "[f] @out");
}

TEST_F(HostStateFiling, ASearchFolderShowsMailsOfOthers) {
  const auto made = state_.tree().MakeSearch("found", in_, "Subject: b", std::nullopt);
  const std::size_t found = std::get<std::size_t>(made);
  EXPECT_EQ(state_.AddMail("Subject: bee\r\n\r\n", out_, 0), "");
  state_.ShowFolder(found);
  EXPECT_EQ(Shown(), "[b] bee @found");
  EXPECT_TRUE(state_.Open(4));
  EXPECT_EQ(Shown(), "b [bee] @found") << "its own mails leave it the current one";
  EXPECT_EQ(state_.DeleteMails(std::vector<std::size_t>{4}), "");
  EXPECT_EQ(Shown(), "b [bee] @found") << "found in the trash too";
  EXPECT_EQ(state_.DeleteMails(std::vector<std::size_t>{4}), "");
  EXPECT_EQ(Shown(), "[b] @found");
  EXPECT_EQ(state_.MoveMails(std::vector<std::size_t>{0}, found),
            "found shows what a search finds: no mail lies in it");
  EXPECT_TRUE(state_.Open(0));
  EXPECT_EQ(Shown(), "[a] b c d @in");
}

TEST_F(HostStateFiling, ASearchIsDoneAgainOnceMailsChanged) {
  const std::size_t found = std::get<std::size_t>(state_.tree().MakeSearch("found", in_, "Subject: b", in_));
  state_.folder_state().search_again = false;
  state_.EnsureSearched(found);
  EXPECT_EQ(state_.MailsOf(found), std::vector<std::size_t>{1});
  EXPECT_EQ(state_.MoveMails(std::vector<std::size_t>{1}, out_), "");
  state_.EnsureSearched(found);
  EXPECT_EQ(state_.MailsOf(found), std::vector<std::size_t>{1}) << "not by itself";
  EXPECT_EQ(state_.Refresh(found), std::nullopt);
  EXPECT_TRUE(state_.MailsOf(found).empty());
  state_.folder_state().search_again = true;
  EXPECT_EQ(state_.MoveMails(std::vector<std::size_t>{1}, in_), "");
  state_.EnsureSearched(found);
  EXPECT_EQ(state_.MailsOf(found), std::vector<std::size_t>{1});
}

TEST_F(HostStateFiling, AFileIsOpened) {
  const std::string from = "From a@example.org Mon Jan  1 00:00:00 2024\n";
  const fs::path file =
      Write("../" + root_.filename().string() + "-list", from + "Subject: x\n\n" + from + "Subject: y\n\n");
  EXPECT_EQ(state_.OpenFile(file, 2 * from.size() + 12), std::nullopt);
  EXPECT_EQ(state_.Header(state_.root(), "Subject"), "y");
  EXPECT_EQ(state_.MailsOf(in_).size(), 4u) << "it is in no list";
  EXPECT_EQ(state_.OpenFile(file, 1), file.string() + " holds no mail at byte 1");
  EXPECT_EQ(state_.OpenFile(root_ / "in/c.eml", 0), std::nullopt);
  EXPECT_EQ(Shown(), "a b [c] d @in") << "one that is read already";
  EXPECT_EQ(state_.OpenFile(root_ / "none", 0),
            "cannot read " + (root_ / "none").string() + ": no such file or folder");
  fs::remove(file);
}

}  // namespace
}  // namespace wrenfold
