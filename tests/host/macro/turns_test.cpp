// When windows have their turn while a macro runs.
#include "host/macro/turns.h"

#include <gtest/gtest.h>

namespace wrenfold::macro {
namespace {

TEST(MacroTurns, AMillionStatementsAskOnceEveryTenMilliseconds) {
  Turns turns;
  int asked = 0;
  // A thousand statements a millisecond, for a second.
  for (std::uint64_t statement = 0; statement < 1'000'000; ++statement) {
    asked += turns.IsDue(5000 + statement / 1000) ? 1 : 0;
  }
  EXPECT_EQ(asked, 100);
}

TEST(MacroTurns, EachStatementBehindACallAsks) {
  Turns turns;
  EXPECT_TRUE(turns.IsDue(0)) << "the first";
  EXPECT_FALSE(turns.IsDue(0));
  turns.Called();
  turns.Called();
  EXPECT_TRUE(turns.IsDue(1));
  EXPECT_FALSE(turns.IsDue(10)) << "nine milliseconds later";
  EXPECT_TRUE(turns.IsDue(11));
}

}  // namespace
}  // namespace wrenfold::macro
