// Names for new files beside those that are there.
#include "host/files/free_name.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "host/files/whole_file.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

TEST(FreeName, IsNumberedBehindItsStem) {
  EXPECT_EQ(NumberedName("in/a.tar.gz", 2), fs::path("in/a.tar (2).gz"));
  EXPECT_EQ(NumberedName("in/a", 10), fs::path("in/a (10)"));
}

TEST(FreeName, IsTheFirstThatNoFileHas) {
  const fs::path folder = fs::path(testing::TempDir()) / "free_name_test";
  fs::remove_all(folder);
  fs::create_directories(folder);
  for (const char* expected : {"a.eml", "a (2).eml", "a (3).eml", "a (4).eml", "a (5).eml"}) {
    EXPECT_EQ(FreeName(folder / "a.eml"), folder / expected);
    ASSERT_TRUE(WriteWholeFile(folder / expected, ""));
  }
  EXPECT_EQ(FreeName(folder / "b.eml"), folder / "b.eml");
  fs::remove_all(folder);
}

TEST(FreeName, IsTheFirstThatTheCallerCallsFree) {
  const std::set<fs::path> used = {"in/v1.2.eml", "in/v1.2 (2).eml", "in/v1.2 (3).eml"};
  const auto taken = [&used](const fs::path& file) { return used.contains(file); };
  EXPECT_EQ(FreeName("in/v1.2.eml", taken), fs::path("in/v1.2 (4).eml"));
  EXPECT_EQ(FreeName("in/v1.3.eml", taken), fs::path("in/v1.3.eml"));
}

TEST(FreeName, CountsOnFromTheNumberOfTheFile) {
  struct Row {
    const char* there;
    const char* expected;
    const char* why;
  };
  constexpr Row kRows[] = {
      {"01 (2).eml", "01 (3).eml", "a numbered one is the second, not a name of its own"},
      {"b (9).eml", "b (10).eml", "whatever is free below it"},
      {"Minutes (2025).eml", "Minutes (2025) (2).eml", "a year tells of the mail"},
      {"c (02).eml", "c (02) (2).eml", "no number of ours"},
      {"d (1).eml", "d (1) (2).eml", "the first one has none"},
      {"e (x).eml", "e (x) (2).eml", "no number"},
      {"f ().eml", "f () (2).eml", "no number"},
      {"g(2).eml", "g(2) (2).eml", "a blank stands in front of ours"},
      {" (2).eml", " (2) (2).eml", "no name without it"},
  };
  const fs::path folder = fs::path(testing::TempDir()) / "free_name_numbers_test";
  fs::remove_all(folder);
  fs::create_directories(folder);
  for (const Row& row : kRows) {
    ASSERT_TRUE(WriteWholeFile(folder / row.there, ""));
    EXPECT_EQ(FreeName(folder / row.there), folder / row.expected) << row.why;
  }
  ASSERT_TRUE(WriteWholeFile(folder / "01 (3).eml", ""));
  EXPECT_EQ(FreeName(folder / "01 (2).eml"), folder / "01 (4).eml");
  fs::remove_all(folder);
}

}  // namespace
}  // namespace wrenfold
