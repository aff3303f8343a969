// Reading the dates of mail headers: RFC 5322, its obsolete forms, asctime, ISO 8601 and what broken mailers
// write. docs/dates.md has the table of accepted forms.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "text/civil_time.h"

namespace wfinfo {

struct HeaderDate {
  FileTicks wall_clock;  // the date and time as they are written, on the sender's clock; never negative
  bool has_zone;         // a zone is written and understood
  int zone_minutes;      // minutes east of UTC, -1439 to 1439; 0 without a zone

  friend bool operator==(const HeaderDate&, const HeaderDate&) = default;
};

// Reads a date. Nothing when `text` cannot be one: no day, month or year, 31 February, hour 25, a year before
// 1601. A weekday is not compared with the date. The time is 00:00:00 when none is written, a leap second
// (:60) is :59.
std::optional<HeaderDate> ReadHeaderDate(std::string_view text);

// The same, without the quick way that ReadHeaderDate has for what nearly all mails begin with,
// [Www, ]D[D] Mon YYYY hh:mm:ss. For tests: the two must never differ.
std::optional<HeaderDate> ReadAnyHeaderDate(std::string_view text);

// Whose clock a time is shown on.
enum class Clock { kSender, kMachine };

// The time in `text` on the given clock; `bias` is the machine's minutes west of UTC. A date without a zone
// is taken to be on the machine's clock already. Nothing when there is no date, or when it falls before 1601.
std::optional<FileTicks> TimeOfHeaderDate(std::string_view text, Clock clock, std::int64_t bias);

}  // namespace wfinfo
