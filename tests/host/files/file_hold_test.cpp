#include "host/files/file_hold.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "host/files/whole_file.h"
#include "tests/host/mail/mail_folder_fixture.h"

namespace wrenfold {
namespace {

using std::chrono::milliseconds;

class HostFileHold : public MailFolderTest {
 protected:
  // Whether somebody else, a thread as well as a process, gets the hold.
  static bool OthersGet(const std::filesystem::path& file) {
    return std::async(std::launch::async, [file] { return !FileHold(file, milliseconds(20)).failure(); })
        .get();
  }
};

TEST_F(HostFileHold, IsOneProgramsAtATime) {
  const auto file = root_ / "box.mbox";
  {
    const FileHold hold(file);
    EXPECT_EQ(hold.failure(), std::nullopt);
    EXPECT_FALSE(OthersGet(file));
    EXPECT_FALSE(OthersGet(root_ / "sub" / ".." / "box.mbox")) << "the same file by another way";
    EXPECT_TRUE(OthersGet(root_ / "other.mbox"));
  }
  EXPECT_TRUE(OthersGet(file));
}

TEST_F(HostFileHold, IsTakenMoreThanOnceByWhoHasIt) {
  const auto file = root_ / "box.mbox";
  const FileHold hold(file);
  {
    const FileHold again({file, root_, file});
    EXPECT_EQ(again.failure(), std::nullopt);
  }
  EXPECT_FALSE(OthersGet(file)) << "the first one lasts";
}

TEST_F(HostFileHold, OfSeveralIsOfAllOrNone) {
  std::promise<void> taken;
  std::promise<void> done;
  std::thread other([&] {
    const FileHold hold(root_ / "b");
    taken.set_value();
    done.get_future().wait();
  });
  taken.get_future().wait();
  const FileHold both({root_ / "b", root_ / "a"}, milliseconds(20));
  EXPECT_EQ(both.failure(), "another program is writing " + (root_ / "b").string());
  EXPECT_TRUE(OthersGet(root_ / "a"));
  done.set_value();
  other.join();
}

TEST_F(HostFileHold, KeepsAFileFromBeingReplaced) {
  const auto file = Write("a.txt", "old");
  std::promise<void> taken;
  std::thread other([&] {
    const FileHold hold(file);
    taken.set_value();
    std::this_thread::sleep_for(milliseconds(100));
    EXPECT_EQ(Read("a.txt"), "old");
    WriteWholeFile(file, "theirs");
  });
  taken.get_future().wait();
  EXPECT_TRUE(ReplaceFile(file, "ours")) << "it waits";
  other.join();
  EXPECT_EQ(Read("a.txt"), "ours");
}

}  // namespace
}  // namespace wrenfold
