// Files read and written as a whole.
#include "host/files/whole_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

class WholeFile : public testing::Test {
 protected:
  WholeFile() : folder_(fs::path(testing::TempDir()) / "whole_file_test") {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  ~WholeFile() override {
    std::error_code error;
    fs::remove_all(folder_, error);
  }

  const fs::path folder_;
};

TEST_F(WholeFile, KeepsEveryByte) {
  const std::string bytes = std::string("a\r\nb\0c\x1A", 7) + "\xFF";
  ASSERT_TRUE(WriteWholeFile(folder_ / "file", bytes));
  EXPECT_EQ(ReadWholeFile(folder_ / "file"), bytes);
  ASSERT_TRUE(WriteWholeFile(folder_ / "file", "x"));
  EXPECT_EQ(ReadWholeFile(folder_ / "file"), "x") << "nothing of the longer text stays";
  ASSERT_TRUE(WriteWholeFile(folder_ / "empty", ""));
  EXPECT_EQ(ReadWholeFile(folder_ / "empty"), "");
}

TEST_F(WholeFile, IsReadToItsEndWhenItIsLongerThanItsSizeTells) {
  // The system makes this file's text while it is read and gives its size as 0.
  const auto made = ReadWholeFile("/proc/self/smaps");
  ASSERT_TRUE(made.has_value());
  EXPECT_GT(made->size(), 70'000u);
  EXPECT_TRUE(made->ends_with('\n'));
}

TEST_F(WholeFile, TakesNoMoreMemoryThanItHolds) {
  const std::string bytes(3000, 'x');
  ASSERT_TRUE(WriteWholeFile(folder_ / "file", bytes));
  EXPECT_LT(ReadWholeFile(folder_ / "file")->capacity(), 2 * bytes.size()) << "thousands of mails are kept";
}

TEST_F(WholeFile, GivesNothingForWhatIsNoFile) {
  EXPECT_EQ(ReadWholeFile(folder_ / "none"), std::nullopt);
  EXPECT_EQ(ReadWholeFile(folder_), std::nullopt) << "a folder";
  EXPECT_EQ(ReadBeginning(folder_ / "none", 9), std::nullopt);
  EXPECT_EQ(ReadBeginning(folder_, 9), std::nullopt) << "a folder";
  EXPECT_FALSE(WriteWholeFile(folder_ / "none" / "file", "x"));
  EXPECT_FALSE(ReplaceFile(folder_ / "none" / "file", "x"));
  EXPECT_FALSE(AppendToFile(folder_ / "none" / "file", "x"));
}

TEST_F(WholeFile, SaysWhyItCannotBeWritten) {
  EXPECT_EQ(WriteWholeFile(folder_ / "none" / "file", "x").reason, "no such file or folder");
  EXPECT_EQ(ReplaceFile(folder_ / "none" / "file", "x").reason, "no such file or folder");
  EXPECT_EQ(AppendToFile("/dev/full", "x").reason, "no room is left");
  fs::create_directories(folder_ / "taken" / "deep");
  EXPECT_FALSE(ReplaceFile(folder_ / "taken", "x").reason.empty()) << "a folder has the name";
}

TEST_F(WholeFile, ReadsNoMoreThanTheBeginningThatIsWanted) {
  ASSERT_TRUE(WriteWholeFile(folder_ / "file", "abcdef"));
  EXPECT_EQ(ReadBeginning(folder_ / "file", 0), "");
  EXPECT_EQ(ReadBeginning(folder_ / "file", 4), "abcd");
  EXPECT_EQ(ReadBeginning(folder_ / "file", 6), "abcdef");
  EXPECT_EQ(ReadBeginning(folder_ / "file", 1000), "abcdef");
}

TEST_F(WholeFile, IsReplacedAndAddedTo) {
  ASSERT_TRUE(ReplaceFile(folder_ / "file", "one"));
  ASSERT_TRUE(ReplaceFile(folder_ / "file", "two"));
  ASSERT_TRUE(AppendToFile(folder_ / "file", " three"));
  EXPECT_EQ(ReadWholeFile(folder_ / "file"), "two three");
  EXPECT_FALSE(fs::exists(folder_ / "file.new"));
}

// The disk is full: of what is added only a part can be written.
TEST_F(WholeFile, IsAsItWasWhenNotAllCanBeAdded) {
  const auto old_file = folder_ / "old.txt";
  ASSERT_TRUE(WriteWholeFile(old_file, "old"));
  const auto add = [&](const fs::path& file) {
    const pid_t child = fork();
    if (child == 0) {
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit most{20'000, 20'000};
      setrlimit(RLIMIT_FSIZE, &most);
      _exit(AppendToFile(file, std::string(100'000, 'x')) ? 1 : 0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
  };
  EXPECT_EQ(add(old_file), 0);
  EXPECT_EQ(ReadWholeFile(old_file), "old");
  EXPECT_EQ(add(folder_ / "new.txt"), 0);
  EXPECT_FALSE(fs::exists(folder_ / "new.txt"));
}

}  // namespace
}  // namespace wrenfold
