#include "src/dates/date_shift.h"

#include <limits>

#include "src/text/ascii.h"

namespace wfinfo {

namespace {

constexpr std::string_view kWeekdayCharacters[] = {"\x93\xFA", "\x8C\x8E", "\x89\xCE", "\x90\x85",
                                                   "\x96\xD8", "\x8B\xE0", "\x93\x79"};  // Sunday to Saturday

constexpr FileTicks kPartTicks[] = {kTicksPerDay, kTicksPerHour, kTicksPerMinute, kTicksPerSecond};

void SkipSpaces(std::string_view& text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
}

// Takes a run of digits off the front. Nothing when it is more than a file time can count.
std::optional<std::int64_t> TakeNumber(std::string_view& text) {
  std::int64_t value = 0;
  bool fits = true;
  for (; !text.empty() && IsDigit(text[0]); text.remove_prefix(1)) {
    fits = fits && !__builtin_mul_overflow(value, 10, &value) &&
           !__builtin_add_overflow(value, text[0] - '0', &value);
  }
  if (!fits) return std::nullopt;
  return value;
}

// days[.hours[.minutes[.seconds]]], never negative.
std::optional<FileTicks> TakeDistance(std::string_view text) {
  FileTicks distance = 0;
  for (const FileTicks unit : kPartTicks) {
    if (unit != kTicksPerDay) {
      if (!text.starts_with('.')) break;
      text.remove_prefix(1);
    }
    const std::optional<std::int64_t> count = TakeNumber(text);
    FileTicks part = 0;
    if (!count || __builtin_mul_overflow(*count, unit, &part)) return std::nullopt;
    if (__builtin_add_overflow(distance, part, &distance)) return std::nullopt;
  }
  return distance;
}

}  // namespace

std::optional<DateShift> ReadShiftText(std::string_view text) {
  SkipSpaces(text);
  for (int weekday = 0; weekday < 7; ++weekday) {
    if (text.starts_with(kWeekdayCharacters[weekday])) return DateShift{0, weekday};
  }
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) {
    text.remove_prefix(1);
    SkipSpaces(text);
  }
  const std::optional<FileTicks> distance = TakeDistance(text);
  if (!distance) return std::nullopt;
  return DateShift{negative ? -*distance : *distance};
}

std::optional<CivilTime> ShiftTime(FileTicks ticks, const DateShift& shift) {
  FileTicks shifted = 0;
  if (__builtin_add_overflow(ticks, shift.distance, &shifted)) return std::nullopt;
  const std::optional<CivilTime> time = CivilFromTicks(shifted);
  if (!time || !shift.weekday || *shift.weekday == time->weekday) return time;
  return ShiftTime(shifted, ShiftOfDays(*shift.weekday - time->weekday));
}

std::optional<FileTicks> TicksOfUnit(std::string_view unit) {
  struct Unit {
    std::string_view name;
    FileTicks ticks;
  };
  constexpr Unit kUnits[] = {
      {"hour", kTicksPerHour}, {"minute", kTicksPerMinute}, {"second", kTicksPerSecond}};
  for (const Unit& known : kUnits) {
    if (StartsWithIgnoringCase(unit, known.name)) return known.ticks;
  }
  return std::nullopt;
}

}  // namespace wfinfo
