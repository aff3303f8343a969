// Types of attached files.
#include <gtest/gtest.h>

#include "host/mime/file_types.h"

namespace wrenfold {
namespace {

TEST(FileTypes, FollowTheExtension) {
  EXPECT_EQ(TypeOfFile("a.TXT"), "text/plain") << "in any case";
  EXPECT_EQ(TypeOfFile("a.tar.gz"), "application/octet-stream");
  EXPECT_EQ(TypeOfFile("txt"), "application/octet-stream") << "no extension";
}

}  // namespace
}  // namespace wrenfold
