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
#include "src/dates/date_results_win.h"
#include "src/dates/date_shift.h"
#include "src/dates/machine_clock_win.h"

namespace {

using wfinfo::CivilTime;
using wfinfo::CurrentBias;
using wfinfo::DateShift;
using wfinfo::FileTicks;
using wfinfo::IsText;
using wfinfo::kNoText;
using wfinfo::LocalNow;
using wfinfo::MachineTime;
using wfinfo::ReturnDefaultForm;
using wfinfo::ReturnFormatted;
using wfinfo::ReturnMailDate;

constexpr std::size_t kLongestCurrentFormat = 4096;
constexpr long long kMostDays = 65535;  // a shift beyond is the address of a text

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
