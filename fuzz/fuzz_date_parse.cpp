// Dates of mail headers: whatever the bytes, the answer is a time of the years 1601 to 10000, it does not
// depend on blanks around the text, on comments in front or on letter case, it prints as a date that reads
// back as itself, on the machine's clock it stays the same moment, and the quick way for the usual form never
// contradicts the thorough one.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "src/dates/date_format.h"
#include "src/dates/date_parse.h"

namespace {

using namespace wfinfo;

std::string UpperCase(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - ('a' - 'A'));
  }
  return text;
}

void CheckRange(const HeaderDate& date) {
  constexpr FileTicks kEnd = DayNumber(10'000, 1, 1) * kTicksPerDay;
  Demand(date.wall_clock >= 0 && date.wall_clock <= kEnd && date.wall_clock % kTicksPerSecond == 0);
  Demand(date.zone_minutes > -1440 && date.zone_minutes < 1440);
  Demand(date.has_zone || date.zone_minutes == 0);
}

void CheckReadsBack(const HeaderDate& date) {
  const std::optional<CivilTime> time = CivilFromTicks(date.wall_clock);
  Demand(time.has_value());
  if (time->year > kLastMailYear) return;  // 31 Dec 9999 24:00
  char form[kDefaultFormRoom];
  const std::string text(form, DefaultDateForm(*time, -date.zone_minutes, form));
  Demand(ReadHeaderDate(text) == HeaderDate{date.wall_clock, true, date.zone_minutes});
}

// In UTC. Where no zone is written the machine's holds.
FileTicks MomentOf(const HeaderDate& date, std::int64_t bias) {
  return date.wall_clock - (date.has_zone ? date.zone_minutes : -bias) * kTicksPerMinute;
}

// What the machine's clock shows names the same moment, and so does its printed form.
void CheckMoment(const HeaderDate& date, std::int64_t bias) {
  const FileTicks machine = OnMachineClock(date, bias);
  Demand(machine + bias * kTicksPerMinute == MomentOf(date, bias));
  const std::optional<CivilTime> time = CivilFromTicks(machine);
  Demand(time.has_value() == (machine >= 0));
  if (!time || time->year > kLastMailYear) return;
  char form[kDefaultFormRoom];
  const std::optional<HeaderDate> back = ReadHeaderDate({form, DefaultDateForm(*time, bias, form)});
  Demand(back && back->has_zone && MomentOf(*back, 0) == MomentOf(date, bias));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::optional<HeaderDate> date = ReadHeaderDate(text);
  Demand(ReadAnyHeaderDate(text) == date);
  const std::string copy(text);
  Demand(ReadHeaderDate("\r\n " + copy + " \t") == date);
  Demand(ReadHeaderDate("(a (b\\)) \x95\x5C)" + copy) == date);
  Demand(ReadHeaderDate(UpperCase(copy)) == date);
  if (!date) return 0;
  CheckRange(*date);
  CheckReadsBack(*date);
  for (const std::int64_t bias : {-540, -345, 0, 210, 480}) CheckMoment(*date, bias);
  return 0;
}
