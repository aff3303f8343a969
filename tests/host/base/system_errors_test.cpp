// What the system's numbers mean.
#include "host/base/system_errors.h"

#include <gtest/gtest.h>

namespace wrenfold {
namespace {

TEST(SystemReason, HasTheNumberWithItsMeaning) {
  EXPECT_EQ(SystemReason(2), "no such file (system error 2)");
  EXPECT_EQ(SystemReason(12029), "no connection to the server (system error 12029)");
  EXPECT_EQ(SystemReason(1717), "system error 1717");
}

}  // namespace
}  // namespace wrenfold
