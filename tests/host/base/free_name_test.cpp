// Names for new files beside those that are there.
#include "host/base/free_name.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "host/base/whole_file.h"

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

}  // namespace
}  // namespace wrenfold
