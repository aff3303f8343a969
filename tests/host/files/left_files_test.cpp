// What is told of files that were not written to their end.
#include "host/files/left_files.h"

#include <gtest/gtest.h>

#include <vector>

namespace wrenfold {
namespace {

TEST(LeftFiles, AreToldInOneLineWithWhatToDo) {
  const std::vector<std::filesystem::path> files{"a.new", "b.new", "c.new", "d.new", "e.new"};
  EXPECT_EQ(ToldAsLeft(std::span(files).first(0)), "");
  EXPECT_EQ(ToldAsLeft(std::span(files).first(1)),
            "a.new was left by a write that was interrupted: it is no mail; look into it, then delete it");
  EXPECT_EQ(ToldAsLeft(std::span(files).first(3)),
            "a.new, b.new, c.new were left by writes that were interrupted: they are no mails; look into "
            "them, then delete them");
  EXPECT_EQ(ToldAsLeft(files),
            "a.new, b.new, c.new and 2 more were left by writes that were interrupted: they are no mails; "
            "look into them, then delete them");
}

}  // namespace
}  // namespace wrenfold
