// Dates as results of exports.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "src/dates/civil_time.h"

namespace wfinfo {

// `time` by `format`, which may lie in one of the results.
const char* ReturnFormatted(std::string_view format, const CivilTime& time);

// `time` in the form of mail headers.
const char* ReturnDefaultForm(const CivilTime& time, std::int64_t bias);

// The file time of a date text: this machine's clock. `bias` is asked for once in an export, so that all its
// times and the printed zone agree even while summer time begins.
std::optional<FileTicks> MachineTime(const char* text, std::int64_t bias);

// The mail date `date` by a format. One with an "o" (for "original") in front shows the clock as it is
// written. `default_ticks`: the time of a text that cannot be a date, or was one before 1601, if such a
// text has one.
const char* ReturnMailDate(const char* date, std::string_view format, std::optional<FileTicks> default_ticks);

}  // namespace wfinfo
