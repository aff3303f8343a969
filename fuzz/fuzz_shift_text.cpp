// Shift texts and units: no distance overflows, the sign mirrors the distance, a weekday stays in its week,
// and a shift there and back gives the time again.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "src/dates/date_shift.h"

namespace {

using namespace wfinfo;

constexpr FileTicks kStart = DayNumber(2024, 3, 6) * kTicksPerDay + 9 * kTicksPerHour;  // a Wednesday

void CheckWeekday(const DateShift& shift) {
  Demand(shift.distance == 0 && *shift.weekday >= 0 && *shift.weekday <= 6);
  const std::optional<CivilTime> time = ShiftTime(kStart, shift);
  Demand(time.has_value() && time->weekday == *shift.weekday && time->hour == 9);
  Demand(time->day >= 3 && time->day <= 9);
}

void CheckDistance(const DateShift& shift) {
  const std::optional<CivilTime> time = ShiftTime(kStart, shift);
  const bool below = shift.distance < -kStart;
  const bool above = shift.distance > INT64_MAX - kStart;
  Demand(time.has_value() == !(below || above));
  if (time) Demand(time == CivilFromTicks(kStart + shift.distance));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::optional<DateShift> shift = ReadShiftText(text);
  Demand(ReadShiftText("  " + std::string(text)).has_value() == shift.has_value());
  if (shift && shift->weekday) CheckWeekday(*shift);
  if (shift && !shift->weekday) CheckDistance(*shift);
  if (!text.empty() && text[0] >= '0' && text[0] <= '9') {
    const std::optional<DateShift> back = ReadShiftText("-" + std::string(text));
    Demand(back.has_value() == shift.has_value());
    if (back) Demand(back->distance == -shift->distance);
  }
  const std::optional<FileTicks> unit = TicksOfUnit(text);
  if (unit) Demand(*unit == kTicksPerHour || *unit == kTicksPerMinute || *unit == kTicksPerSecond);
  return 0;
}
