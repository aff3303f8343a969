#include "text/date_shift.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>
#include <string_view>

namespace wfinfo {
namespace {

constexpr FileTicks kMax = std::numeric_limits<FileTicks>::max();
constexpr FileTicks kD = kTicksPerDay, kH = kTicksPerHour, kM = kTicksPerMinute, kS = kTicksPerSecond;
constexpr FileTicks kWednesday = DayNumber(2024, 3, 6) * kD + 9 * kH;

struct DistanceCase {
  std::string_view text;
  FileTicks distance;
  const char* why;
};

TEST(DateShift, DistancesAreRead) {
  const DistanceCase cases[] = {
      {"1", kD, "one day"},
      {"-1", -kD, "one day back"},
      {"+1", kD, "a plus sign"},
      {"", 0, "an empty text"},
      {"x", 0, "no number"},
      {"-0.1.30", -kH - 30 * kM, "the sign applies to every part"},
      {"1.2.3.4", kD + 2 * kH + 3 * kM + 4 * kS, "all parts"},
      {"1.2.3.4.5", kD + 2 * kH + 3 * kM + 4 * kS, "text behind the last part is ignored"},
      {"0.0.0.90", 90 * kS, "parts may be larger than their unit"},
      {"   7", 7 * kD, "leading spaces"},
      {"  -  2.12", -2 * kD - 12 * kH, "spaces behind the sign"},
      {"- -1", 0, "one sign only"},
      {".5", 5 * kH, "days left out"},
      {"1..30", kD + 30 * kM, "hours left out"},
      {"1 .5", kD, "a space ends the text"},
      {"1.5 hours", kD + 5 * kH, "words are ignored"},
      {"\t1", 0, "a tab is no space"},
      {"007", 7 * kD, "leading zeros"},
      {"10675199", 10'675'199 * kD, "as many days as file times have"},
  };
  for (const DistanceCase& c : cases) {
    const std::optional<DateShift> shift = ReadShiftText(c.text);
    ASSERT_TRUE(shift) << c.why;
    EXPECT_EQ(shift->distance, c.distance) << c.why;
    EXPECT_FALSE(shift->weekday) << c.why;
  }
}

TEST(DateShift, DistancesBeyondFileTimesAreNone) {
  for (const std::string_view text :
       {"10675200", "-10675200", "99999999999999999999999999", "0.999999999999999", "10675199.3",
        "0.0.0.922337203686", "1.1.1.99999999999999999999"}) {
    EXPECT_FALSE(ReadShiftText(text)) << text;
  }
}

TEST(DateShift, WeekdaysStayInTheirWeek) {
  struct WeekdayCase {
    std::string_view text;
    int day;  // of March 2024
  };
  const WeekdayCase cases[] = {{"\x93\xFA", 3}, {"\x8C\x8E", 4}, {"\x89\xCE", 5},           {"\x90\x85", 6},
                               {"\x96\xD8", 7}, {"\x8B\xE0", 8}, {"  \x93\x79 and more", 9}};
  for (const WeekdayCase& c : cases) {
    const std::optional<DateShift> shift = ReadShiftText(c.text);
    ASSERT_TRUE(shift && shift->weekday);
    const std::optional<CivilTime> time = ShiftTime(kWednesday, *shift);
    ASSERT_TRUE(time);
    EXPECT_EQ(time->day, c.day);
    EXPECT_EQ(time->weekday, *shift->weekday);
    EXPECT_EQ(time->hour, 9);
  }
  const std::optional<DateShift> sign_first = ReadShiftText("+\x8C\x8E");
  ASSERT_TRUE(sign_first);
  EXPECT_FALSE(sign_first->weekday) << "a sign is followed by days";
}

TEST(DateShift, TimesOutsideFileTimesAreNone) {
  EXPECT_TRUE(ShiftTime(0, ShiftOfDays(0)));
  EXPECT_FALSE(ShiftTime(0, ShiftOfDays(-1)));
  EXPECT_FALSE(ShiftTime(0, *ReadShiftText("-0.0.0.1")));
  EXPECT_TRUE(ShiftTime(kMax, ShiftOfDays(0)));
  EXPECT_FALSE(ShiftTime(kMax, *ReadShiftText("0.0.0.1")));
  EXPECT_FALSE(ShiftTime(kMax, *ReadShiftText("10675199")));
  EXPECT_FALSE(ShiftTime(0, *ReadShiftText("\x93\xFA")))
      << "1 January 1601 was a Monday: its Sunday is outside";
}

struct UnitCase {
  std::string_view unit;
  std::optional<FileTicks> ticks;
};

TEST(DateShift, UnitsAreKnownByTheirBeginning) {
  const UnitCase cases[] = {
      {"hour", kH},    {"Hours", kH}, {"HOURLY", kH},  {"hou", {}},     {"minute", kM},
      {"Minutes", kM}, {"minut", {}}, {"SECONDS", kS}, {"second", kS},  {"secon", {}},
      {"", {}},        {"day", {}},   {" hour", {}},   {"h\x8Fur", {}}, {"seconds ago", kS},
  };
  for (const UnitCase& c : cases) EXPECT_EQ(TicksOfUnit(c.unit), c.ticks) << c.unit;
}

TEST(DateShift, CalendarDaysDoNotLookAtTheHour) {
  const FileTicks today = DayNumber(2024, 3, 6) * kD + 1 * kH;
  const FileTicks yesterday = DayNumber(2024, 3, 5) * kD + 23 * kH;
  EXPECT_EQ(CalendarDaysBetween(today, yesterday), 1);
  EXPECT_EQ(CalendarDaysBetween(yesterday, today), -1);
  EXPECT_EQ((today - yesterday) / kH, 2);
  EXPECT_EQ((yesterday - today) / kH, -2);
  EXPECT_EQ(CalendarDaysBetween(today, today + 22 * kH), 0);
}

TEST(DateShift, RandomShiftsComeBack) {
  std::mt19937_64 random(43);
  for (int i = 0; i < 50'000; ++i) {
    const auto days = static_cast<FileTicks>(random() % 4'000'000),
               hours = static_cast<FileTicks>(random() % 1000),
               minutes = static_cast<FileTicks>(random() % 1000),
               seconds = static_cast<FileTicks>(random() % 100'000);
    const std::string parts = std::to_string(days) + "." + std::to_string(hours) + "." +
                              std::to_string(minutes) + "." + std::to_string(seconds);
    const FileTicks distance = days * kD + hours * kH + minutes * kM + seconds * kS;
    ASSERT_EQ(ReadShiftText(parts)->distance, distance);
    ASSERT_EQ(ReadShiftText("-" + parts)->distance, -distance);
    const auto start = static_cast<FileTicks>(random() >> 2);
    ASSERT_EQ(ShiftTime(start, {distance}), CivilFromTicks(start + distance));
  }
}

}  // namespace
}  // namespace wfinfo
