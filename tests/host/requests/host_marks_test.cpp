// What is kept of mails beside their files, from one start to the next.
#include <gtest/gtest.h>

#include <memory>

#include "host/mail/marks_file.h"
#include "host/requests/host_state.h"
#include "tests/host/mail/mail_folder_fixture.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

std::string Mail(const std::string& name) {
  return "Message-ID: <" + name + "@x>\r\nSubject: " + name + "\r\n\r\n" + name + "\r\n";
}

std::string InMbox(const std::string& mail) { return "From x Mon Jun  2 09:00:00 2025\r\n" + mail + "\r\n"; }

class HostMarks : public MailFolderTest {
 protected:
  // Three mails in "in", none in "out", three in an mbox.
  void SetUp() override {
    MailFolderTest::SetUp();
    for (const char* name : {"a", "b", "c"}) Write(std::string("in/") + name + ".eml", Mail(name));
    fs::create_directories(root_ / "out");
    Write("l.mbox", InMbox(Mail("x")) + InMbox(Mail("y")) + InMbox(Mail("z")));
    Start();
  }

  void Start(bool read_only = false) {
    complaints_.clear();
    state_ = std::make_unique<HostState>();
    state_->complain = [this](const std::string& line) { complaints_ += line + "\n"; };
    state_->set_read_only(read_only);
    ASSERT_EQ(state_->AddMails(root_, MailStore::Unreadable::kRefuse), std::nullopt);
  }

  std::size_t Find(const std::string& subject) {
    for (std::size_t i = 0; i < state_->mail_count(); ++i) {
      if (state_->Header(i, "Subject") == subject && !state_->IsRemoved(i)) return i;
    }
    return kNoMail;
  }

  std::size_t Folder(const char* name) { return *state_->tree().Find(name, 0); }

  void Mark(const std::string& subject) { state_->ChangeState(Find(subject), kStateMarked, kStateMarked); }

  // "a y": those that are marked, in the order of reading.
  std::string Marked() {
    std::string marked;
    for (std::size_t i = 0; i < state_->mail_count(); ++i) {
      if ((state_->StateWord(i) & kStateMarked) != 0 && !state_->IsRemoved(i))
        marked += (marked.empty() ? "" : " ") + state_->Header(i, "Subject");
    }
    return marked;
  }

  std::unique_ptr<HostState> state_;
  std::string complaints_;
};

TEST_F(HostMarks, LastToTheNextStart) {
  const std::size_t a = Find("a");
  state_->ChangeState(a, kStateMarked | kStateNoFolding | kStateReplied,
                      kStateMarked | kStateUnread | kStateNoFolding | kStateReplied);
  state_->set_colour(a, 5);
  state_->folder_state().bookmarks.insert(a);
  Mark("y");
  EXPECT_TRUE(state_->SaveMarks());
  EXPECT_EQ(Files(), "in/a.eml in/b.eml in/c.eml in/wrenfold.marks l.mbox wrenfold.marks");
  const std::size_t head = Read("wrenfold.marks").find("l.mbox");
  EXPECT_EQ(Read("wrenfold.marks").substr(head), "l.mbox\tmail=2\tid=<y@x>\tmark=1\r\n");
  Start();
  EXPECT_EQ(Marked(), "y a");
  const std::size_t again = Find("a");
  EXPECT_EQ(state_->StateWord(again) & (kStateUnread | kStateNoFolding | kStateReplied),
            kStateNoFolding | kStateReplied);
  EXPECT_EQ(state_->colour(again), 5);
  EXPECT_TRUE(state_->folder_state().bookmarks.contains(again));
  EXPECT_NE(state_->StateWord(Find("b")) & kStateUnread, 0u) << "others are as they were";
}

TEST_F(HostMarks, AreNotWrittenWhenNothingDiffers) {
  EXPECT_TRUE(state_->SaveMarks());
  Mark("a");
  state_->ChangeState(Find("a"), 0, kStateMarked);
  state_->ChangeState(Find("b"), kStateAltered, kStateAltered);
  EXPECT_TRUE(state_->SaveMarks());
  EXPECT_EQ(Files(), "in/a.eml in/b.eml in/c.eml l.mbox");
  Mark("a");
  EXPECT_TRUE(state_->SaveMarks());
  Start();
  const fs::path file = root_ / "in/wrenfold.marks";
  fs::last_write_time(file, fs::file_time_type{});
  EXPECT_TRUE(state_->SaveMarks());
  EXPECT_EQ(fs::last_write_time(file), fs::file_time_type{}) << "a run that changes nothing writes nothing";
  state_->ChangeState(Find("a"), 0, kStateMarked);
  EXPECT_TRUE(state_->SaveMarks());
  EXPECT_FALSE(fs::exists(file)) << "nothing is left to keep";
}

TEST_F(HostMarks, GoAlongWithFiledMailsAtOnce) {
  Mark("a");
  Mark("y");
  state_->folder_state().bookmarks.insert(Find("y"));
  EXPECT_TRUE(state_->SaveMarks());
  EXPECT_EQ(state_->MoveMails(std::vector{Find("a"), Find("y")}, Folder("out")), "");
  EXPECT_FALSE(fs::exists(root_ / "in/wrenfold.marks"));
  EXPECT_FALSE(fs::exists(root_ / "wrenfold.marks"));
  Start();
  EXPECT_EQ(Marked(), "y a") << "no end of the program in between";
  EXPECT_TRUE(state_->folder_state().bookmarks.contains(Find("y")));
  EXPECT_EQ(state_->CopyMails(std::vector{Find("a")}, Folder("l")), "");
  Start();
  EXPECT_EQ(Marked(), "a y a") << "the copy too, in the mbox";
  EXPECT_EQ(state_->DeleteMails(std::vector{Find("y")}), "");
  Start();
  EXPECT_EQ(Marked(), "a a y") << "in the trash";
  EXPECT_EQ(state_->DeleteMails(std::vector{Find("y")}), "");
  EXPECT_FALSE(fs::exists(root_ / "trash/wrenfold.marks")) << "for good";
}

TEST_F(HostMarks, FollowTheMailsOfAnMbox) {
  Mark("z");
  EXPECT_TRUE(state_->SaveMarks());
  EXPECT_EQ(state_->MoveMails(std::vector{Find("x")}, Folder("out")), "");
  EXPECT_NE(Read("wrenfold.marks").find("mail=2\tid=<z@x>"), std::string::npos) << "its place is another";
  Write("l.mbox", InMbox(Mail("new")) + InMbox(Mail("z")) + InMbox(Mail("y")) + InMbox(Mail("last")));
  Start();
  EXPECT_EQ(Marked(), "z") << "another program wrote the mbox";
  Write("l.mbox", InMbox(Mail("new")) + InMbox(Mail("y")) + InMbox(Mail("last")));
  Start();
  EXPECT_EQ(Marked(), "") << "what stands in its place now is another mail";
}

TEST_F(HostMarks, TellTwinsOfAnMboxApart) {
  const std::string first = "Message-ID: <1@x>\r\nSubject: p\r\n\r\nfirst\r\n";
  const std::string second = "Message-ID: <1@x>\r\nSubject: q\r\n\r\nsecond\r\n";
  Write("l.mbox", InMbox(first) + InMbox(second));
  Start();
  Mark("q");
  EXPECT_TRUE(state_->SaveMarks());
  Write("l.mbox", InMbox(first));
  Start();
  EXPECT_EQ(Marked(), "") << "the other one with its Message-ID";
}

TEST_F(HostMarks, StayWithARewrittenMail) {
  Write("in/n.eml", "Subject: n\r\n\r\n");
  Start();
  Mark("n");
  EXPECT_TRUE(state_->SaveMarks());
  const std::string raw = "Subject: N\r\n\r\n";
  Write("in/n.eml", raw);
  state_->TakeRewritten(Find("n"), raw, 0);
  Start();
  EXPECT_EQ(Marked(), "N") << "the host wrote it";
  Write("in/n.eml", "Subject: another\r\n\r\n");
  Start();
  EXPECT_EQ(Marked(), "");
}

TEST_F(HostMarks, AreReadButNotWrittenReadOnly) {
  Mark("a");
  EXPECT_TRUE(state_->SaveMarks());
  const std::string before = Read("in/wrenfold.marks");
  Start(true);
  EXPECT_EQ(Marked(), "a");
  Mark("b");
  EXPECT_EQ(state_->MoveMails(std::vector{Find("a")}, Folder("out")), "");
  EXPECT_TRUE(state_->SaveMarks());
  EXPECT_EQ(Read("in/wrenfold.marks"), before);
  EXPECT_EQ(Files(), "in/a.eml in/b.eml in/c.eml in/wrenfold.marks l.mbox");
}

TEST_F(HostMarks, KeepWhatOthersWrote) {
  const std::string others = "# mine\r\nb.eml\tid=<b@x>\tmark=1\tnote=call back\r\nodd line\r\n";
  Write("in/wrenfold.marks", others + "gone.eml\tid=<g@x>\tmark=1\r\n");
  Start();
  EXPECT_EQ(complaints_,
            (root_ / "in/wrenfold.marks").string() + ":3: this line keeps no mail's marks (skipped)\n");
  EXPECT_EQ(Marked(), "b");
  EXPECT_EQ(state_->MoveMails(std::vector{Find("b")}, Folder("out")), "");
  EXPECT_NE(Read("out/wrenfold.marks").find("mark=1\tnote=call back"), std::string::npos);
  EXPECT_EQ(Read("in/wrenfold.marks"), "# mine\r\nodd line\r\n");
}

TEST_F(HostMarks, TakeInWhatAnotherProgramWroteMeanwhile) {
  Mark("a");
  EXPECT_TRUE(state_->SaveMarks());
  Write("in/wrenfold.marks", "a.eml\tid=<a@x>\tmark=1\tcolour=2\r\nb.eml\tid=<b@x>\tmark=1\r\n");
  Mark("c");
  EXPECT_TRUE(state_->SaveMarks());
  Start();
  EXPECT_EQ(Marked(), "a b c");
  EXPECT_EQ(state_->colour(Find("a")), 2);
}

TEST_F(HostMarks, OfFilesThatWereNotReadStay) {
  Mark("a");
  Mark("b");
  EXPECT_TRUE(state_->SaveMarks());
  state_ = std::make_unique<HostState>();
  ASSERT_EQ(state_->AddMails(root_ / "in/b.eml", MailStore::Unreadable::kRefuse), std::nullopt);
  EXPECT_EQ(Marked(), "b");
  state_->ChangeState(0, 0, kStateMarked);
  EXPECT_TRUE(state_->SaveMarks());
  Start();
  EXPECT_EQ(Marked(), "a");
}

TEST_F(HostMarks, ThatCannotBeWrittenAreToldOnce) {
  // A folder in its place: also root cannot write there.
  fs::create_directories(root_ / "in/wrenfold.marks.new/x");
  Mark("a");
  EXPECT_FALSE(state_->SaveMarks());
  EXPECT_FALSE(state_->SaveMarks());
  EXPECT_EQ(complaints_, "marks of mails are not kept: cannot write " +
                             (root_ / "in/wrenfold.marks").string() + ": a folder is in the way\n");
  fs::remove_all(root_ / "in/wrenfold.marks.new");
  EXPECT_TRUE(state_->SaveMarks()) << "what could not be written is not forgotten";
  Start();
  EXPECT_EQ(Marked(), "a");
}

TEST_F(HostMarks, ThatCannotBeReadAreNotOverwritten) {
  fs::create_directories(root_ / "in/wrenfold.marks");
  Start();
  EXPECT_EQ(complaints_, "cannot read " + (root_ / "in/wrenfold.marks").string() +
                             ": it is a folder (marks are not kept there)\n");
  Mark("a");
  EXPECT_FALSE(state_->SaveMarks());
  EXPECT_TRUE(fs::is_directory(root_ / "in/wrenfold.marks"));
}

TEST_F(HostMarks, FileIsNoMailAndKeepsNoFolder) {
  Mark("a");
  EXPECT_TRUE(state_->SaveMarks());
  const fs::path file = root_ / "in/wrenfold.marks";
  Start();
  EXPECT_EQ(state_->mail_count(), 6u);
  const std::string reason = "cannot read " + file.string() + ": it keeps the marks of mails and is none";
  EXPECT_EQ(state_->AddMails(file, MailStore::Unreadable::kRefuse), reason);
  EXPECT_EQ(state_->OpenFile(file, 0), reason);
  EXPECT_EQ(std::get<std::string>(state_->tree().Make("out/wrenfold.marks", 0)),
            "no folder can be called \"out/wrenfold.marks\": files of the host are called so");
  Write("in/wrenfold.marks", "# mine\r\n");
  EXPECT_EQ(state_->tree().WhyNotDelete(Folder("in")), std::nullopt);
  EXPECT_EQ(state_->DeleteMails(std::vector{Find("a"), Find("b"), Find("c")}), "");
  EXPECT_EQ(state_->tree().Delete(Folder("in")), std::nullopt);
  EXPECT_FALSE(fs::exists(root_ / "in"));
}

TEST_F(HostMarks, ComeWithMailsThatAreReadAgain) {
  Write("out/d.eml", Mail("d"));
  Write("out/wrenfold.marks", "d.eml\tid=<d@x>\tmark=1\r\n");
  EXPECT_EQ(state_->Refresh(Folder("out")), std::nullopt);
  EXPECT_EQ(Marked(), "d");
}

TEST_F(HostMarks, KeepTheFirstStateOfMailsThatTheHostWrote) {
  EXPECT_EQ(state_->AddMail(Mail("sent"), Folder("out"), kMailRead), "");
  const std::string draft = "X-Unsent: 1\r\nSubject: draft\r\n\r\n";
  state_->AddWritten(Write("out/draft.eml", draft), draft);
  EXPECT_TRUE(state_->SaveMarks());
  Start();
  EXPECT_EQ(state_->StateWord(Find("sent")) & kStateUnread, 0u);
  EXPECT_EQ(state_->StateWord(Find("draft")) & kStateUnread, 0u) << "one's own text";
  EXPECT_EQ(Read("out/wrenfold.marks").find("draft"), std::string::npos);
}

}  // namespace
}  // namespace wrenfold
