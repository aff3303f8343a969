#include "tests/monkey/growth.h"

#include <gmock/gmock.h>

namespace monkey {
namespace {

std::vector<Holdings> Measures(long Holdings::*kind, const std::vector<long>& counts) {
  std::vector<Holdings> measures(counts.size());
  for (std::size_t i = 0; i < counts.size(); ++i) measures[i].*kind = counts[i];
  return measures;
}

TEST(Growth, IsToldOnlyWhenItIsMoreThanCachesTake) {
  for (const Kind& kind : kKinds) {
    if (kind.count == &Holdings::gdi) continue;
    SCOPED_TRACE(kind.name);
    EXPECT_FALSE(HasGrown(Measures(kind.count, {50, 82})));
    EXPECT_TRUE(HasGrown(Measures(kind.count, {50, 83})));
    EXPECT_TRUE(HasGrown(Measures(kind.count, {50, 20, 90, 83})));
    EXPECT_FALSE(HasGrown(Measures(kind.count, {50, 500, 50})));
  }
  std::vector<Holdings> measures(2);
  measures[1].bytes = std::size_t{32} << 20;
  EXPECT_FALSE(HasGrown(measures));
  ++measures[1].bytes;
  EXPECT_TRUE(HasGrown(measures));
}

TEST(Growth, OfWindowContextsInOneStepIsNoFinding) {
  // As a busy machine showed it, and as a context lost in every hundredth of 14,589 calls would.
  EXPECT_FALSE(HasGrown(Measures(&Holdings::gdi, {89, 89, 89, 123, 123, 123, 123, 123})));
  EXPECT_FALSE(HasGrown(Measures(&Holdings::gdi, {87, 95, 119, 123, 123, 123, 123, 123})));
  EXPECT_TRUE(HasGrown(Measures(&Holdings::gdi, {89, 104, 118, 133, 147, 162, 177, 191})));
}

TEST(Growth, NeedsMeasures) {
  EXPECT_FALSE(HasGrown({}));
  EXPECT_FALSE(HasGrown(Measures(&Holdings::user, {900})));
  EXPECT_EQ(SteadyGrowth({}), "");
  EXPECT_EQ(SteadyGrowth(Measures(&Holdings::user, {900})), "");
}

TEST(Growth, WithEachMeasureIsSteady) {
  EXPECT_EQ(SteadyGrowth(Measures(&Holdings::handles, {4, 5, 10})), "6 handles");
  EXPECT_EQ(SteadyGrowth(Measures(&Holdings::handles, {4, 10, 10})), "");
}

}  // namespace
}  // namespace monkey
