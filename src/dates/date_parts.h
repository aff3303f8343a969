// What the readers of dates share: the names of months, weekdays and zones, and the parts of a date.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>

#include "src/dates/date_names.h"
#include "src/dates/date_parse.h"
#include "src/text/ascii.h"

namespace wfinfo::date_parts {

static_assert(std::endian::native == std::endian::little, "letters and digits are compared packed");

constexpr char Lower(char c) { return static_cast<char>(c | 0x20); }  // of a letter
constexpr bool IsSpace(char c) { return IsBlank(c) || IsLineEnd(c); }

// The letters of a word in one number, the first lowest, in lower case. Words that do not fit give 0 here.
template <class Word = std::uint32_t>
constexpr Word Packed(std::string_view word) {
  Word packed = 0;
  if (word.size() > sizeof packed) return 0;
  for (std::size_t i = 0; i < word.size(); ++i) {
    packed |= static_cast<Word>(static_cast<unsigned char>(Lower(word[i]))) << (8 * i);
  }
  return packed;
}

// A month or weekday.
struct CalendarName {
  std::uint32_t letters;  // the first three, packed
  std::uint8_t month;     // 1 to 12; 0 for a weekday
  std::uint64_t rest;     // the letters behind those, packed alike
  std::string_view name;
};

// Months and weekdays in one table without collisions, found by a product of the packed first three letters.
constexpr std::uint32_t NameSlot(std::uint32_t letters) { return (letters * 0xF3009A5DU) >> 27; }

inline constexpr std::array<CalendarName, 32> kCalendarNames = [] {
  std::array<CalendarName, 32> names{};
  const auto put = [&names](std::string_view name, std::uint8_t month) {
    const std::uint32_t letters = Packed(name.substr(0, kNameAbbreviation));
    names[NameSlot(letters)] = {letters, month, Packed<std::uint64_t>(name.substr(kNameAbbreviation)), name};
  };
  for (const std::string_view name : kWeekdayNames) put(name, 0);
  std::uint8_t month = 0;
  for (const std::string_view name : kMonthNames) put(name, ++month);
  return names;
}();

constexpr bool AllNamesHaveTheirSlot() {
  std::size_t count = 0;
  for (const CalendarName& name : kCalendarNames) count += name.letters != 0 ? 1 : 0;
  return count == std::size(kWeekdayNames) + std::size(kMonthNames);
}
static_assert(AllNamesHaveTheirSlot());

// The one that begins with three letters, packed; null when there is none.
inline const CalendarName* NameOfLetters(std::uint32_t letters) {
  const CalendarName& name = kCalendarNames[NameSlot(letters)];
  return letters != 0 && name.letters == letters ? &name : nullptr;
}

// A month or weekday, whole or cut after three letters or more: "Mar", "Sept", "Thurs", "Wednesday".
const CalendarName* FindName(std::string_view word);

struct ZoneName {
  std::uint32_t letters;  // packed
  std::int16_t minutes;   // east of UTC
};

// Null for a name that is not known.
const ZoneName* FindZone(std::string_view word);

struct Parts {
  int year = -1;  // -1: not known yet
  int month = 0;  // 0: not known yet
  int day = 0;
  int hour = -1;
  int minute = 0;
  int second = 0;
  bool has_zone = false;
  int zone_minutes = 0;
};

// The date that the parts make, if it is one.
inline std::optional<HeaderDate> Assembled(const Parts& p) {
  if (p.year < kFirstYear || p.month < 1 || p.month > 12) return std::nullopt;
  constexpr int kEveryMonth = 28;  // days that each month has
  if (p.day < 1 || (p.day > kEveryMonth && p.day > DaysInMonth(p.year, p.month))) return std::nullopt;
  const bool midnight_at_the_end = p.hour == 24 && p.minute == 0 && p.second == 0;
  if ((p.hour > 23 && !midnight_at_the_end) || p.minute > 59 || p.second > 60) return std::nullopt;
  const int second = p.second == 60 ? 59 : p.second;  // a leap second stays in its minute
  const int hour = p.hour < 0 ? 0 : p.hour;
  const FileTicks ticks = DayNumber(p.year, p.month, p.day) * kTicksPerDay +
                          ((hour * 60 + p.minute) * 60 + second) * kTicksPerSecond;
  return HeaderDate{ticks, p.has_zone, p.zone_minutes};
}

// A year as it is written: 00 to 49 are of this century, 50 to 99 and three digits count from 1900. -1
// for others.
constexpr int YearOf(int value, std::size_t digits) {
  if (digits == 4) return value;
  if (digits == 3) return value + 1900;
  if (digits == 2) return value + (value < 50 ? 2000 : 1900);
  return -1;
}

}  // namespace wfinfo::date_parts
