// Shift texts and units: no distance overflows, the sign mirrors the distance, a weekday stays in its week,
// and a shift there and back gives the time again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "src/dates/date_shift.h"

namespace {

using namespace wfinfo;

constexpr FileTicks kStart = DayNumber(2024, 3, 6) * kTicksPerDay + 9 * kTicksPerHour;  // a Wednesday

void Require(bool holds) {
  if (!holds) std::abort();
}

void CheckWeekday(const DateShift& shift) {
  Require(shift.distance == 0 && *shift.weekday >= 0 && *shift.weekday <= 6);
  const std::optional<CivilTime> time = ShiftTime(kStart, shift);
  Require(time.has_value() && time->weekday == *shift.weekday && time->hour == 9);
  Require(time->day >= 3 && time->day <= 9);
}

void CheckDistance(const DateShift& shift) {
  const std::optional<CivilTime> time = ShiftTime(kStart, shift);
  const bool below = shift.distance < -kStart;
  const bool above = shift.distance > INT64_MAX - kStart;
  Require(time.has_value() == !(below || above));
  if (time) Require(time == CivilFromTicks(kStart + shift.distance));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::optional<DateShift> shift = ReadShiftText(text);
  Require(ReadShiftText("  " + std::string(text)).has_value() == shift.has_value());
  if (shift && shift->weekday) CheckWeekday(*shift);
  if (shift && !shift->weekday) CheckDistance(*shift);
  if (!text.empty() && text[0] >= '0' && text[0] <= '9') {
    const std::optional<DateShift> back = ReadShiftText("-" + std::string(text));
    Require(back.has_value() == shift.has_value());
    if (back) Require(back->distance == -shift->distance);
  }
  const std::optional<FileTicks> unit = TicksOfUnit(text);
  if (unit) Require(*unit == kTicksPerHour || *unit == kTicksPerMinute || *unit == kTicksPerSecond);
  return 0;
}
