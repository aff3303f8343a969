// The exports that print, shift and compare dates.
#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/dates/date_format.h"
#include "src/dates/date_parse.h"
#include "src/dates/date_shift.h"

namespace {

using wfinfo::CivilTime;
using wfinfo::DateShift;
using wfinfo::FileTicks;
using wfinfo::IsText;
using wfinfo::kNoText;

static_assert(sizeof(SYSTEMTIME) == sizeof(CivilTime) &&
              offsetof(SYSTEMTIME, wDayOfWeek) == offsetof(CivilTime, weekday) &&
              offsetof(SYSTEMTIME, wMilliseconds) == offsetof(CivilTime, milliseconds));

constexpr std::size_t kLongestCurrentFormat = 4096;
constexpr long long kMostDays = 65535;  // a shift beyond is the address of a text

std::int64_t CurrentBias() {
  TIME_ZONE_INFORMATION zone = {};
  const DWORD answer = GetTimeZoneInformation(&zone);
  return wfinfo::MachineBias({static_cast<std::uint32_t>(answer), static_cast<std::int32_t>(zone.Bias),
                              static_cast<std::int32_t>(zone.StandardBias),
                              static_cast<std::int32_t>(zone.DaylightBias)});
}

CivilTime LocalNow() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  CivilTime time;
  std::memcpy(&time, &now, sizeof time);
  return time;
}

// Built beside the results, since the format may lie in one of them. What a short result cannot hold becomes
// a long one.
const char* ReturnFormatted(std::string_view format, const CivilTime& time) {
  char text[wfinfo::kShortResultSize];
  const std::size_t length = wfinfo::FormatDateText(format, time, text, sizeof text);
  if (length < sizeof text) return wfinfo::ReturnText({text, length});
  char* const block = wfinfo::NewResultBlock(length + 1);
  if (block == nullptr) return kNoText;
  wfinfo::FormatDateText(format, time, block, length);
  return wfinfo::KeepLongResult(block);
}

const char* ReturnDefaultForm(const CivilTime& time, std::int64_t bias) {
  char text[wfinfo::kDefaultFormRoom];
  return wfinfo::ReturnText({text, wfinfo::DefaultDateForm(time, bias, text)});
}

// The file time of a date text: this machine's clock. `bias` is asked for once in an export, so that all its
// times and the printed zone agree even while summer time begins.
std::optional<FileTicks> MachineTime(const char* text, std::int64_t bias) {
  const std::optional<wfinfo::HeaderDate> date = wfinfo::ReadHeaderDate(text);
  if (!date) return std::nullopt;
  return wfinfo::OnMachineClock(*date, bias);
}

// The same on the clock as it is written.
std::optional<FileTicks> WrittenTime(const char* text) {
  const std::optional<wfinfo::HeaderDate> date = wfinfo::ReadHeaderDate(text);
  if (!date) return std::nullopt;
  return date->wall_clock;
}

// A format with an "o" (for "original") in front shows the clock as it is written. `default_ticks`: the time
// of a text that cannot be a date, or was one before 1601, if such a text has one.
const char* ReturnMailDate(const char* date, std::string_view format,
                           std::optional<FileTicks> default_ticks) {
  const bool as_written = format.starts_with('o');
  if (as_written) format.remove_prefix(1);
  std::optional<FileTicks> ticks = as_written ? WrittenTime(date) : MachineTime(date, CurrentBias());
  if (!ticks || *ticks < 0) ticks = default_ticks;
  if (!ticks) return kNoText;
  const std::optional<CivilTime> time = wfinfo::CivilFromTicks(*ticks);
  return time ? ReturnFormatted(format, *time) : kNoText;
}

// The shift of a number or a text that has been checked.
std::optional<DateShift> ShiftOf(long long shift, bool is_days) {
  if (is_days) return wfinfo::ShiftOfDays(static_cast<std::int32_t>(shift));
  return wfinfo::ReadShiftText(reinterpret_cast<const char*>(shift));
}

}  // namespace

const char* FormatDateSub(const char* format, void* time) noexcept {
  if (!IsText(format) || IsBadReadPtr(time, sizeof(CivilTime))) return kNoText;
  CivilTime record;
  std::memcpy(&record, time, sizeof record);
  return ReturnFormatted(format, record);
}

const char* CurrentDate(const char* format) noexcept {
  if (!wfinfo::IsTextOrNull(format)) return kNoText;
  if (format == nullptr || *format == '\0') return ReturnDefaultForm(LocalNow(), CurrentBias());
  const std::string_view text = format;
  return text.size() > kLongestCurrentFormat ? kNoText : ReturnFormatted(text, LocalNow());
}

const char* FormatDate(const char* date, const char* format) noexcept {
  if (!IsText(date) || !IsText(format)) return kNoText;
  return ReturnMailDate(date, format, std::nullopt);
}

const char* FormatDateDefault1601(const char* date, const char* format) noexcept {
  if (!IsText(date) || !IsText(format)) return kNoText;
  return ReturnMailDate(date, format, FileTicks{0});
}

const char* ShiftDate(const char* date, long long shift) noexcept {
  const bool is_days = shift >= -kMostDays && shift <= kMostDays;
  if (!IsText(date) || (!is_days && !IsText(reinterpret_cast<const char*>(shift)))) return kNoText;
  const std::optional<DateShift> distance = ShiftOf(shift, is_days);
  const std::int64_t bias = CurrentBias();
  const std::optional<FileTicks> ticks = MachineTime(date, bias);
  std::optional<CivilTime> shifted;
  if (distance && ticks) shifted = wfinfo::ShiftTime(*ticks, *distance);
  if (shifted) return ReturnDefaultForm(*shifted, bias);
  wfinfo::ReportError(
      {"ShiftDate failed. Maybe date/time overflow or underflow.",
       "ShiftDate関数で内部エラーが起きました。たぶん日付がオーバーフローまたはアンダーフローしています。"});
  return kNoText;
}

long long SubtractDate(const char* date1, const char* date2, const char* unit) noexcept {
  if (!IsText(date1) || !IsText(date2) || !wfinfo::IsTextOrNull(unit)) return 0;
  const std::optional<FileTicks> unit_ticks = unit != nullptr ? wfinfo::TicksOfUnit(unit) : std::nullopt;
  if (unit != nullptr && !unit_ticks) {
    wfinfo::ReportError({"Invalid SubtractDate parameter.", "SubtractDateのパラメータがおかしいです。"});
    return 0;
  }
  const std::int64_t bias = CurrentBias();
  const std::optional<FileTicks> ticks1 = MachineTime(date1, bias);
  const std::optional<FileTicks> ticks2 = MachineTime(date2, bias);
  if (!ticks1 || !ticks2) return 0;
  if (unit_ticks) return (*ticks1 - *ticks2) / *unit_ticks;
  return wfinfo::CalendarDaysBetween(*ticks1, *ticks2);
}
