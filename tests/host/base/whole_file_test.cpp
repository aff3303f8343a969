// Files read and written as a whole.
#include "host/base/whole_file.h"

#include <gtest/gtest.h>

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

TEST_F(WholeFile, GivesNothingForWhatIsNoFile) {
  EXPECT_EQ(ReadWholeFile(folder_ / "none"), std::nullopt);
  EXPECT_EQ(ReadWholeFile(folder_), std::nullopt) << "a folder";
  EXPECT_EQ(ReadBeginning(folder_ / "none", 9), std::nullopt);
  EXPECT_EQ(ReadBeginning(folder_, 9), std::nullopt) << "a folder";
  EXPECT_FALSE(WriteWholeFile(folder_ / "none" / "file", "x"));
  EXPECT_FALSE(ReplaceFile(folder_ / "none" / "file", "x"));
  EXPECT_FALSE(AppendToFile(folder_ / "none" / "file", "x"));
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

}  // namespace
}  // namespace wrenfold
