#include "src/dates/date_results_win.h"

#include "src/bridge/results_win.h"
#include "src/dates/date_format.h"
#include "src/dates/date_parse.h"
#include "src/dates/machine_clock_win.h"

namespace wfinfo {
namespace {

// The same on the clock as it is written.
std::optional<FileTicks> WrittenTime(const char* text) {
  const std::optional<HeaderDate> date = ReadHeaderDate(text);
  if (!date) return std::nullopt;
  return date->wall_clock;
}

}  // namespace

// Built beside the results. What a short result cannot hold becomes a long one.
const char* ReturnFormatted(std::string_view format, const CivilTime& time) {
  char text[kShortResultSize];
  const std::size_t length = FormatDateText(format, time, text, sizeof text);
  if (length < sizeof text) return ReturnText({text, length});
  char* const block = NewResultBlock(length + 1);
  if (block == nullptr) return kNoText;
  FormatDateText(format, time, block, length);
  return KeepLongResult(block);
}

const char* ReturnDefaultForm(const CivilTime& time, std::int64_t bias) {
  char text[kDefaultFormRoom];
  return ReturnText({text, DefaultDateForm(time, bias, text)});
}

std::optional<FileTicks> MachineTime(const char* text, std::int64_t bias) {
  const std::optional<HeaderDate> date = ReadHeaderDate(text);
  if (!date) return std::nullopt;
  return OnMachineClock(*date, bias);
}

const char* ReturnMailDate(const char* date, std::string_view format,
                           std::optional<FileTicks> default_ticks) {
  const bool as_written = format.starts_with('o');
  if (as_written) format.remove_prefix(1);
  std::optional<FileTicks> ticks = as_written ? WrittenTime(date) : MachineTime(date, CurrentBias());
  if (!ticks || *ticks < 0) ticks = default_ticks;
  if (!ticks) return kNoText;
  const std::optional<CivilTime> time = CivilFromTicks(*ticks);
  return time ? ReturnFormatted(format, *time) : kNoText;
}

}  // namespace wfinfo
