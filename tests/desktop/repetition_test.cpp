#include "src/desktop/repetition.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace wfinfo {
namespace {

const void* Handle(std::uintptr_t number) { return reinterpret_cast<const void*>(number); }

TEST(Repetition, FindsACircleOfAnyLengthBehindAnyBeginning) {
  for (std::uintptr_t beginning = 0; beginning < 20; ++beginning) {
    for (std::uintptr_t length = 1; length < 40; ++length) {
      Repetition repetition;
      std::uintptr_t steps = 0;
      const auto next = [&] {
        return Handle(1 + (steps < beginning ? steps : beginning + (steps - beginning) % length));
      };
      while (!repetition.Comes(next())) ASSERT_LT(++steps, 1000u) << beginning << " " << length;
      // What is known to come again has come before.
      EXPECT_GE(steps, beginning + length) << beginning << " " << length;
      EXPECT_LE(steps, 4 * (beginning + length)) << beginning << " " << length;
    }
  }
}

TEST(Repetition, FindsNoneWhereNothingRepeats) {
  Repetition repetition;
  for (std::uintptr_t i = 1; i < 10000; ++i) ASSERT_FALSE(repetition.Comes(Handle(i)));
}

}  // namespace
}  // namespace wfinfo
