#include "src/dates/date_shift.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include "src/dates/date_format.h"
#include "src/dates/date_parse.h"

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
        "0.0.0.922337203686", "0.0.0.9223372036854775808", "18446744073709551617",
        "1.1.1.99999999999999999999"}) {
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
    EXPECT_EQ(shift->distance, 0);
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
  EXPECT_FALSE(ShiftTime(std::numeric_limits<FileTicks>::min(), ShiftOfDays(-1))) << "nor any later one";
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
  EXPECT_EQ(CalendarDaysBetween(0, -1), 1) << "a time before 1601 lies on the day before";
  EXPECT_EQ(CalendarDaysBetween(-1, -kD), 0);
  EXPECT_EQ(CalendarDaysBetween(-1, -kD - 1), 1);
}

TEST(DateShift, ATimeBefore1601MayBeShiftedBack) {
  EXPECT_FALSE(ShiftTime(-kH, ShiftOfDays(0)));
  EXPECT_EQ(ShiftTime(-kH, *ReadShiftText("0.1")), CivilFromTicks(0));
  EXPECT_EQ(ShiftTime(-kH, ShiftOfDays(1)), CivilFromTicks(23 * kH));
  EXPECT_FALSE(ShiftTime(-kH, *ReadShiftText("\x93\x79"))) << "it has no weekday";
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

// --- Moments -------------------------------------------------------------------------------------------

// A date as some mailer writes it, and the moment in UTC that it names where `bias` is the machine's.
struct WrittenMoment {
  std::string text;
  FileTicks moment;
};

WrittenMoment WriteMoment(std::mt19937_64& random, std::int64_t bias) {
  constexpr std::string_view kFormats[] = {"EW, DD EM YYYY hh:mm:ss", "D EM YYYY hh:mm:ss",
                                           "YYYY-MM-DDThh:mm:ss", "EW EM DD hh:mm:ss YYYY"};
  constexpr int kUsualZones[] = {0, 540, -480, -420, 330, 345, -210, 765, -720, 840};
  // Two days inside the years that can be written, most of them in this century.
  const auto days = static_cast<FileTicks>(random() % 4 == 0 ? random() % 3'067'600
                                                             : DayNumber(2000, 1, 1) + random() % 36'500);
  const FileTicks clock = (days + 2) * kD + static_cast<FileTicks>(random() % 86'400) * kS;
  char text[64];
  WrittenMoment written;
  written.text.assign(text, FormatDateText(kFormats[random() % std::size(kFormats)], *CivilFromTicks(clock),
                                           text, sizeof text));
  if (random() % 4 == 0) {  // no zone: the machine's clock
    written.moment = clock + bias * kM;
    return written;
  }
  const int east = random() % 2 == 0 ? kUsualZones[random() % std::size(kUsualZones)]
                                     : static_cast<int>(random() % 2879) - 1439;
  std::snprintf(text, sizeof text, random() % 2 == 0 ? " %c%02d%02d" : " %c%02d:%02d", east < 0 ? '-' : '+',
                std::abs(east) / 60, std::abs(east) % 60);
  written.text += text;
  written.moment = clock - east * kM;
  return written;
}

FileTicks MachineTime(const std::string& text, std::int64_t bias) {
  return OnMachineClock(ReadHeaderDate(text).value(), bias);
}

std::int64_t AnyBias(std::mt19937_64& random) {
  const auto bias = static_cast<std::int64_t>(random() % 2879) - 1439;
  return bias == 3 ? 4 : bias;  // 3 is printed as another zone
}

TEST(DateShift, DifferencesAreThoseOfTheMoments) {
  std::mt19937_64 random(51);
  for (int i = 0; i < 50'000; ++i) {
    const std::int64_t bias = AnyBias(random);
    const WrittenMoment one = WriteMoment(random, bias), two = WriteMoment(random, bias);
    const FileTicks t1 = MachineTime(one.text, bias), t2 = MachineTime(two.text, bias);
    ASSERT_EQ(t1 - t2, one.moment - two.moment) << one.text << " and " << two.text << " at " << bias;
    const std::int64_t days = (one.moment - bias * kM) / kD - (two.moment - bias * kM) / kD;
    ASSERT_EQ(CalendarDaysBetween(t1, t2), days) << one.text << " and " << two.text << " at " << bias;
  }
}

// The printed form, taken apart by the C library, and its moment in UTC.
FileTicks MomentOfForm(const std::string& form) {
  int day = 0, year = 0, hour = 0, minute = 0, second = 0, zone = 0;
  char month[4] = {};
  EXPECT_EQ(std::sscanf(form.c_str(), "%*3s, %d %3s %d %d:%d:%d %d", &day, month, &year, &hour, &minute,
                        &second, &zone),
            7)
      << form;
  const std::string_view months = "JanFebMarAprMayJunJulAugSepOctNovDec";
  const auto number = static_cast<int>(months.find(month) / 3) + 1;
  return DayNumber(year, number, day) * kD + hour * kH + (minute - zone / 100 * 60 - zone % 100) * kM +
         second * kS;
}

TEST(DateShift, AShiftByNothingNamesTheSameMoment) {
  std::mt19937_64 random(52);
  for (int i = 0; i < 50'000; ++i) {
    const std::int64_t bias = AnyBias(random);
    const WrittenMoment written = WriteMoment(random, bias);
    const std::optional<CivilTime> time = ShiftTime(MachineTime(written.text, bias), ShiftOfDays(0));
    ASSERT_TRUE(time) << written.text << " at " << bias;
    char form[kDefaultFormRoom];
    const std::string printed(form, DefaultDateForm(*time, bias, form));
    ASSERT_EQ(MomentOfForm(printed), written.moment) << written.text << " at " << bias << ": " << printed;
  }
}

}  // namespace
}  // namespace wfinfo
