// Reading the dates of mail headers: RFC 5322, its obsolete forms, asctime, ISO 8601 and what broken mailers
// write. docs/dates.md has the table of accepted forms.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "src/dates/civil_time.h"

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

// The same, without the quick ways that ReadHeaderDate has for what nearly all mails have. For tests: the two
// must never differ.
std::optional<HeaderDate> ReadAnyHeaderDate(std::string_view text);

// The moment of `date` on the clock of this machine, `bias` minutes west of UTC as MachineBias gives it. A
// date without a zone is on that clock already. Negative when the machine's clock showed a year before 1601
// then, at most a day into the year 10000 for a bias of less than a day.
constexpr FileTicks OnMachineClock(const HeaderDate& date, std::int64_t bias) {
  return date.has_zone ? date.wall_clock - (date.zone_minutes + bias) * kTicksPerMinute : date.wall_clock;
}

}  // namespace wfinfo
