#include "src/dates/civil_time.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>

namespace wfinfo {
namespace {

// The slow reference: counts days one by one.
struct DayCounter {
  int year = 1601;
  int month = 1;
  int day = 1;
  int weekday = 1;  // 1 January 1601 was a Monday

  void Next() {
    weekday = (weekday + 1) % 7;
    if (++day <= DaysInMonth(year, month)) return;
    day = 1;
    if (++month <= 12) return;
    month = 1;
    ++year;
  }
};

TEST(CivilTime, EveryDayOfTwelveCenturiesAgreesWithCounting) {
  DayCounter counter;
  for (std::int64_t number = 0; number < 3 * 146'097; ++number, counter.Next()) {
    ASSERT_EQ(DayNumber(counter.year, counter.month, counter.day), number);
    const std::optional<CivilTime> time = CivilFromTicks(number * kTicksPerDay);
    ASSERT_TRUE(time);
    ASSERT_EQ(time->year, counter.year);
    ASSERT_EQ(time->month, counter.month);
    ASSERT_EQ(time->day, counter.day);
    ASSERT_EQ(time->weekday, counter.weekday);
  }
}

TEST(CivilTime, LeapYearsFollowTheGregorianRule) {
  EXPECT_EQ(DaysInMonth(2000, 2), 29);
  EXPECT_EQ(DaysInMonth(1900, 2), 28);
  EXPECT_EQ(DaysInMonth(2024, 2), 29);
  EXPECT_EQ(DaysInMonth(2023, 2), 28);
  EXPECT_EQ(DaysInMonth(2023, 12), 31);
}

TEST(CivilTime, TheEndsOfFileTimeBreakDown) {
  EXPECT_FALSE(CivilFromTicks(-1));
  EXPECT_FALSE(CivilFromTicks(std::numeric_limits<FileTicks>::min()));
  EXPECT_EQ(CivilFromTicks(0), (CivilTime{1601, 1, 1, 1, 0, 0, 0, 0}));
  EXPECT_EQ(CivilFromTicks(std::numeric_limits<FileTicks>::max()),
            (CivilTime{30828, 9, 4, 14, 2, 48, 5, 477}));
}

TEST(CivilTime, RandomTicksComeBack) {
  std::mt19937_64 random(41);
  for (int i = 0; i < 200'000; ++i) {
    const auto ticks = static_cast<FileTicks>(random() >> 1);
    const std::optional<CivilTime> t = CivilFromTicks(ticks);
    ASSERT_TRUE(t);
    const FileTicks again = DayNumber(t->year, t->month, t->day) * kTicksPerDay + t->hour * kTicksPerHour +
                            t->minute * kTicksPerMinute + t->second * kTicksPerSecond +
                            t->milliseconds * kTicksPerMillisecond;
    ASSERT_EQ(again, ticks - ticks % kTicksPerMillisecond);
    ASSERT_EQ(t->weekday, WeekdayOfDay(ticks / kTicksPerDay));
    ASSERT_EQ(MidnightOf(ticks), DayNumber(t->year, t->month, t->day) * kTicksPerDay);
  }
}

}  // namespace
}  // namespace wfinfo
