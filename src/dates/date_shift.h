// Shifting dates and measuring between them, in file times.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "src/dates/civil_time.h"

namespace wfinfo {

// A distance, or a weekday of the same week.
struct DateShift {
  FileTicks distance;            // 0 when a weekday is wanted
  std::optional<int> weekday{};  // 0 = Sunday
};

constexpr DateShift ShiftOfDays(std::int32_t days) { return {days * kTicksPerDay}; }

// Reads a shift text:
//
//   shift   = *SPACE (weekday / [sign *SPACE] days ["." hours ["." minutes ["." seconds]]])
//   weekday = the one-character Japanese name, two bytes
//   sign    = "+" / "-"          ; of every part
//   days, hours, minutes, seconds = *DIGIT   ; no digit: 0
//
//   "1" one day later       "-0.1.30" an hour and a half earlier       "+ 2.12" two and a half days later
//
// What follows is ignored. Nothing when the distance is longer than file times can count.
std::optional<DateShift> ReadShiftText(std::string_view text);

// `ticks` shifted. Nothing when the result is not a time that can be broken down: before 1601 or beyond the
// last file time. A time before 1601 may be shifted into those years by a distance; it has no weekday.
std::optional<CivilTime> ShiftTime(FileTicks ticks, const DateShift& shift);

// Calendar days from the date of `ticks2` to the date of `ticks1`.
constexpr std::int64_t CalendarDaysBetween(FileTicks ticks1, FileTicks ticks2) {
  return (MidnightOf(ticks1) - MidnightOf(ticks2)) / kTicksPerDay;
}

// Ticks of a unit text, which begins with "hour", "minute" or "second" in any letter case. Nothing for
// any other.
std::optional<FileTicks> TicksOfUnit(std::string_view unit);

}  // namespace wfinfo
