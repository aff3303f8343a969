#include "src/dates/civil_time.h"

namespace wfinfo {

namespace {

struct Date {
  unsigned year;
  unsigned month;
  unsigned day;
};

// The inverse of DayNumber, in the same years that begin in March.
Date DateOfDay(std::uint32_t day_number) {
  constexpr unsigned kDaysPer400Years = 146'097;
  const std::uint32_t days = day_number + 306;  // since 1 March 1600
  const unsigned cycle = days / kDaysPer400Years;
  const unsigned in_cycle = days % kDaysPer400Years;
  const unsigned year_of_cycle =
      (in_cycle - in_cycle / 1460 + in_cycle / 36'524 - in_cycle / (kDaysPer400Years - 1)) / 365;
  const unsigned in_year = in_cycle - (365 * year_of_cycle + year_of_cycle / 4 - year_of_cycle / 100);
  const unsigned month_from_march = (5 * in_year + 2) / 153;
  const unsigned month = month_from_march < 10 ? month_from_march + 3 : month_from_march - 9;
  return {1600 + cycle * 400 + year_of_cycle + (month <= 2 ? 1 : 0), month,
          in_year - (153 * month_from_march + 2) / 5 + 1};
}

}  // namespace

std::optional<CivilTime> CivilFromTicks(FileTicks ticks) {
  if (ticks < 0) return std::nullopt;
  // At most 10675199 days: the year stays below 30829.
  const auto day_number = static_cast<std::uint32_t>(ticks / kTicksPerDay);
  const auto in_day = static_cast<std::uint32_t>(ticks % kTicksPerDay / kTicksPerMillisecond);
  const Date date = DateOfDay(day_number);
  const auto narrow = [](unsigned value) { return static_cast<std::uint16_t>(value); };
  return CivilTime{narrow(date.year),
                   narrow(date.month),
                   static_cast<std::uint16_t>(WeekdayOfDay(day_number)),
                   narrow(date.day),
                   narrow(in_day / 3'600'000),
                   narrow(in_day / 60'000 % 60),
                   narrow(in_day / 1000 % 60),
                   narrow(in_day % 1000)};
}

}  // namespace wfinfo
