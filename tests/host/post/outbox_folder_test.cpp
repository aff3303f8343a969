#include "host/post/outbox_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <future>
#include <thread>

#include "host/files/file_hold.h"
#include "host/files/file_reasons.h"
#include "host/files/safe_saving.h"
#include "host/files/whole_file.h"
#include "host/post/inbox_folder.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr char kMail[] = "To: a@x\r\n\r\nt\r\n";
const MailStamp kStamp{"d", "u", "b@x"};

class Folders : public testing::Test {
 protected:
  void SetUp() override {
    root_ = fs::temp_directory_path() /
            ("outbox-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
             testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(root_);
    outbox_.Open(root_ / "outbox", root_ / "Sent");
  }
  void TearDown() override { fs::remove_all(root_); }

  fs::path Put(const std::string& name, const std::string& bytes) {
    fs::create_directories((root_ / name).parent_path());
    std::ofstream(root_ / name, std::ios::binary) << bytes;
    return root_ / name;
  }
  std::string Bytes(const fs::path& file) { return ReadWholeFile(file).value_or("(none)"); }

  fs::path root_;
  OutboxFolder outbox_;
};

std::optional<std::string> Taken(const fs::path&, const std::string&) { return std::nullopt; }

using Outbox = Folders;

TEST_F(Outbox, AMailWaitsUntilItIsSent) {
  fs::path file;
  ASSERT_EQ(outbox_.Add(kMail, "u-1", file), std::nullopt);
  EXPECT_EQ(outbox_.Waiting(), std::vector<fs::path>{root_ / "outbox/u-1.eml"});
  std::string handed;
  ASSERT_EQ(outbox_.Send(file, kStamp,
                         [&](const fs::path& given, const std::string& mail) {
                           handed = mail;
                           EXPECT_EQ(Bytes(given), mail) << "the file has what is handed on";
                           return std::optional<std::string>();
                         }),
            std::nullopt);
  EXPECT_EQ(handed, FinishMail(kMail, kStamp));
  EXPECT_TRUE(outbox_.Waiting().empty());
  EXPECT_EQ(Bytes(root_ / "Sent/u-1.eml"), handed);
}

TEST_F(Outbox, AMailThatIsNotTakenStaysWithItsMessageId) {
  fs::path file;
  outbox_.Add(kMail, "u-1", file);
  const auto refuse = [](const fs::path&, const std::string&) { return std::optional<std::string>("no"); };
  EXPECT_EQ(outbox_.Send(file, kStamp, refuse), "u-1.eml: no");
  EXPECT_EQ(Bytes(file), FinishMail(kMail, kStamp));
  outbox_.Send(file, {"later", "other", "b@x"}, Taken);
  EXPECT_EQ(Bytes(root_ / "Sent/u-1.eml"), FinishMail(kMail, kStamp)) << "sent again, it is the same mail";
}

TEST_F(Outbox, WhatCannotBeSentIsToldAndStays) {
  EXPECT_EQ(outbox_.Send(Put("outbox/a.eml", "Subject: s\r\n\r\n"), kStamp, Taken), "a.eml has no recipient");
  const fs::path gone = root_ / "outbox/gone.eml";
  EXPECT_EQ(outbox_.Send(gone, kStamp, Taken), "cannot read " + gone.string() + ": no such file or folder");
  EXPECT_EQ(Bytes(root_ / "outbox/a.eml"), "Subject: s\r\n\r\n");
  Put("Sent", "a file in the place of the folder");
  const std::string sent = (root_ / "Sent").string();
  EXPECT_EQ(outbox_.Send(Put("outbox/b.eml", kMail), kStamp, Taken),
            "b.eml: cannot make the folder " + sent + ": there is a file " + sent);
  EXPECT_TRUE(fs::exists(root_ / "outbox/b.eml"));
}

TEST_F(Outbox, OfAMailThatIsGoneWhenItWasHandedOnTheCopyComesOutOfMemory) {
  fs::path file;
  outbox_.Add(kMail, "u-1", file);
  const auto take = [](const fs::path& given, const std::string&) {
    fs::remove(given);
    return std::optional<std::string>();
  };
  EXPECT_EQ(outbox_.Send(file, kStamp, take), std::nullopt);
  EXPECT_EQ(Bytes(root_ / "Sent/u-1.eml"), FinishMail(kMail, kStamp));
}

TEST_F(Outbox, AMailThatWasSentAndCannotBeFiledIsToldAndNotSentAgain) {
  fs::path file;
  outbox_.Add(kMail, "u-1", file);
  int times = 0;
  const auto block = [&](const fs::path&, const std::string&) {
    ++times;
    fs::remove_all(root_ / "Sent");
    Put("Sent", "a file in the place of the folder");
    return std::optional<std::string>();
  };
  const std::string sent = (root_ / "Sent").string();
  const std::string told = file.string() + " was sent, but no copy of it can be kept: cannot write " + sent +
                           "/u-1.eml: there is no folder " + sent +
                           "; it lies in the outbox still, from where another run would send it again";
  EXPECT_EQ(outbox_.Send(file, kStamp, block), told);
  EXPECT_EQ(outbox_.Send(file, kStamp, block), told);
  fs::remove(root_ / "Sent");
  fs::create_directories(root_ / "Sent");
  EXPECT_EQ(outbox_.Send(file, kStamp, block), std::nullopt);
  EXPECT_EQ(times, 1);
  EXPECT_EQ(Bytes(root_ / "Sent/u-1.eml"), FinishMail(kMail, kStamp));
  EXPECT_TRUE(outbox_.Waiting().empty());
}

TEST_F(Outbox, AMailThatAnotherHostSendsIsLeftToIt) {
  fs::path file;
  outbox_.Add(kMail, "u-1", file);
  std::promise<void> taken;
  std::promise<void> done;
  std::thread other([&] {
    const FileHold hold(file);
    taken.set_value();
    done.get_future().wait();
  });
  taken.get_future().wait();
  int times = 0;
  const auto count = [&](const fs::path&, const std::string&) {
    return ++times, std::optional<std::string>();
  };
  EXPECT_EQ(outbox_.Send(file, kStamp, count), "u-1.eml: another program is sending it");
  EXPECT_EQ(times, 0);
  EXPECT_EQ(Bytes(file), kMail) << "nothing is written into it meanwhile";
  done.set_value();
  other.join();
  EXPECT_EQ(outbox_.Send(file, kStamp, count), std::nullopt);
  EXPECT_EQ(times, 1);
}

TEST_F(Outbox, WhileAMailIsSentNobodyElseGetsIt) {
  fs::path file;
  outbox_.Add(kMail, "u-1", file);
  const auto look = [](const fs::path& given, const std::string&) {
    auto others_wait = std::async(std::launch::async, [given] {
      return FileHold(given, std::chrono::milliseconds(20)).failure().has_value();
    });
    return std::optional<std::string>(others_wait.get() ? "held" : "free");
  };
  EXPECT_EQ(outbox_.Send(file, kStamp, look), "u-1.eml: held");
}

TEST_F(Outbox, WhatAProgramThatWasEndedLeftIsKnownByItsName) {
  Put("outbox/a.eml", kMail);
  Put("outbox/b.eml.new", "half");
  Put("outbox/c.TMP", "half");
  Put("outbox/notes.txt", "");
  EXPECT_EQ(UnfinishedFilesOf(root_ / "outbox"),
            (std::vector<fs::path>{root_ / "outbox/b.eml.new", root_ / "outbox/c.TMP"}));
  EXPECT_TRUE(UnfinishedFilesOf(root_ / "none").empty());
}

TEST_F(Outbox, AFileIsMovedToAFreeNameOnly) {
  const fs::path from = Put("a.eml", "new");
  const fs::path to = Put("b.eml", "old");
  EXPECT_EQ(MoveFileTo(from, to), "cannot write " + to.string() + ": it exists already");
  EXPECT_EQ(Bytes(from) + Bytes(to), "newold");
  EXPECT_EQ(MoveFileTo(from, root_ / "c.eml"), std::nullopt);
  EXPECT_EQ(Bytes(root_ / "c.eml"), "new");
  EXPECT_EQ(MoveFileTo(from, root_ / "d.eml"), "cannot read " + from.string() + ": no such file or folder");
}

TEST_F(Outbox, SendsInOrderOfNamesAndNotWhatIsUnfinishedOrUnsent) {
  Put("outbox/b.eml", kMail);
  Put("outbox/a.EML", kMail);
  Put("outbox/c.eml.new", kMail);
  Put("outbox/d.eml", std::string("X-Unsent: 1\r\n") + kMail);
  EXPECT_EQ(outbox_.Waiting(), (std::vector<fs::path>{root_ / "outbox/a.EML", root_ / "outbox/b.eml"}));
}

TEST_F(Outbox, ADeferredMailWaitsForItsTime) {
  Put("outbox/a.eml", std::string("Deferred-Delivery: Sat, 22 Nov 2025 10:00:00 +0900\r\n") + kMail);
  Put("outbox/b.eml", kMail);
  const fs::path deferred = root_ / "outbox/a.eml";
  const fs::path other = root_ / "outbox/b.eml";
  EXPECT_EQ(outbox_.Waiting("Sat, 22 Nov 2025 00:59:59 +0000"), std::vector<fs::path>{other});
  EXPECT_EQ(outbox_.Waiting("Sat, 22 Nov 2025 01:00:00 +0000"), (std::vector<fs::path>{deferred, other}));
  EXPECT_EQ(outbox_.Waiting(), (std::vector<fs::path>{deferred, other})) << "whatever the time is";
}

TEST_F(Outbox, NoMailTakesThePlaceOfAnother) {
  fs::path first;
  fs::path second;
  outbox_.Add("To: 1@x\r\n\r\n", "u", first);
  outbox_.Add("To: 2@x\r\n\r\n", "u", second);
  EXPECT_EQ(second.filename(), "u (2).eml");
  Put("Sent/u.eml", "older");
  outbox_.Send(first, kStamp, Taken);
  EXPECT_EQ(Bytes(root_ / "Sent/u.eml"), "older");
  EXPECT_NE(Bytes(root_ / "Sent/u (2).eml").find("1@x"), std::string::npos);
}

TEST_F(Outbox, TellsWhyItCannotBeWritten) {
  Put("outbox", "a file in the place of the folder");
  fs::path file;
  const std::string folder = (root_ / "outbox").string();
  EXPECT_EQ(outbox_.Add(kMail, "u", file),
            "cannot make the folder " + folder + ": there is a file " + folder);
}

using Inbox = Folders;

TEST_F(Inbox, AnAccountsFolderLiesBelowTheServers) {
  EXPECT_EQ(AccountFolder(root_, "work"), root_ / "work");
  for (const char* name : {"", ".", "..", "a/b", "a\\b", "c:", "Deleted", " ", "a."})
    EXPECT_FALSE(AccountFolder(root_, name)) << name;
}

TEST_F(Inbox, OnlyTheMailsMeantAreDeletedOnTheServer) {
  Put("inbox/a.eml", "Message-ID: <1>\r\n\r\n");
  Put("inbox/b.eml", "Message-ID: <2>\r\n\r\n");
  Put("inbox/c.eml", "Subject: without\r\n\r\n");
  EXPECT_EQ(DeleteOnServer(root_ / "inbox", {"<1>", "", "<3>"}), 1u);
  EXPECT_TRUE(fs::exists(root_ / "inbox/deleted/a.eml"));
  EXPECT_TRUE(fs::exists(root_ / "inbox/b.eml"));
  EXPECT_TRUE(fs::exists(root_ / "inbox/c.eml"));
}

using FileReasons = Folders;

TEST_F(FileReasons, NameWhatIsWrong) {
  const fs::path file = Put("a.txt", "x");
  const std::string root = root_.string();
  EXPECT_EQ(WhyUnreadable(root_ / "none"), "cannot read " + root + "/none: no such file or folder");
  EXPECT_EQ(WhyUnreadable(root_), "cannot read " + root + ": it is a folder");
  EXPECT_EQ(WhyUnwritable(root_ / "none/b"),
            "cannot write " + root + "/none/b: there is no folder " + root + "/none");
  EXPECT_EQ(WhyUnwritable(root_), "cannot write " + root + ": it is a folder");
  EXPECT_EQ(WhyUnwritable(""), "cannot write a file without a name");
  EXPECT_EQ(WriteSafely(root_ / "c", "1"), std::nullopt);
  EXPECT_EQ(Bytes(root_ / "c"), "1");
  EXPECT_EQ(WriteSafely(root_ / "none/c", "1"), WhyUnwritable(root_ / "none/c"));
  // Nothing can be made in it, by root either.
  EXPECT_EQ(WriteSafely("/proc/self/new", "1"), "cannot write /proc/self/new: no such file or folder");
}

}  // namespace
}  // namespace wrenfold
