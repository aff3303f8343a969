// Calendar arithmetic: file times (100-nanosecond ticks since 1 January 1601, as the system counts them) and
// broken-down times. Proleptic Gregorian calendar, no time zones, no leap seconds.
#pragma once

#include <cstdint>
#include <optional>

namespace wfinfo {

// Ticks since 1 January 1601 00:00; negative means before.
using FileTicks = std::int64_t;

inline constexpr FileTicks kTicksPerMillisecond = 10'000;
inline constexpr FileTicks kTicksPerSecond = 10'000'000;
inline constexpr FileTicks kTicksPerMinute = 60 * kTicksPerSecond;
inline constexpr FileTicks kTicksPerHour = 60 * kTicksPerMinute;
inline constexpr FileTicks kTicksPerDay = 24 * kTicksPerHour;

inline constexpr int kFirstYear = 1601;

// The system's broken-down time record, field for field.
struct CivilTime {
  std::uint16_t year;
  std::uint16_t month;    // 1 to 12
  std::uint16_t weekday;  // 0 = Sunday to 6
  std::uint16_t day;
  std::uint16_t hour;
  std::uint16_t minute;
  std::uint16_t second;
  std::uint16_t milliseconds;

  friend bool operator==(const CivilTime&, const CivilTime&) = default;
};
static_assert(sizeof(CivilTime) == 16);

constexpr bool IsLeapYear(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

// Days of `month` (1 to 12).
constexpr int DaysInMonth(int year, int month) {
  constexpr std::uint8_t kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return kDays[month - 1] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

// Days from 1 January 1601 to a date of the year 1601 or later; `month` 1 to 12, `day` 1 to 31.
constexpr std::int64_t DayNumber(int year, int month, int day) {
  // Years are counted from 1 March 1600, so that the leap day is the last day of its year.
  const int month_from_march = month > 2 ? month - 3 : month + 9;
  const auto years = static_cast<std::uint32_t>(year - 1600 - (month > 2 ? 0 : 1));
  const std::uint32_t centuries = years / 100;
  const std::int64_t days_before_year = std::int64_t{years} * 365 + years / 4 - centuries + centuries / 4;
  constexpr int kMarchToNewYear = 306;
  return days_before_year + (153 * month_from_march + 2) / 5 + day - 1 - kMarchToNewYear;
}

// Weekday (0 = Sunday) of a day number that is not negative. 1 January 1601 was a Monday.
constexpr int WeekdayOfDay(std::int64_t day_number) { return static_cast<int>((day_number + 1) % 7); }

// Breaks `ticks` down. Nothing for times before 1601 (negative ticks), as the system's conversion.
std::optional<CivilTime> CivilFromTicks(FileTicks ticks);

// The first tick of the day that `ticks` lies in; also before 1601, more than a day from the ends of
// the type.
constexpr FileTicks MidnightOf(FileTicks ticks) {
  const FileTicks in_day = ticks % kTicksPerDay;
  return ticks - in_day - (in_day < 0 ? kTicksPerDay : 0);
}

}  // namespace wfinfo
