// Printing dates: free formats with numbers, English and Japanese names and Japanese eras, and the default
// form of mail headers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "src/dates/civil_time.h"

namespace wfinfo {

// Prints `time` by `format` to `out`, at most `room` bytes, without a terminating zero. Returns the length of
// the whole text, which may be more than `room`; what does not fit is only counted. The result is host text
// when the format is. A byte of the format becomes at most five bytes.
//
//   Y M D      year, month, day                  h k K    hour: 0 to 23, modulo 12, modulo 12 but 12 for noon
//   m s        minute, second                    W        Japanese weekday character
//   EW EFW     Sun, Sunday                       EM EFM   Jan, January
//   i          AM or PM                          J j      gozen or gogo; J counts 12 o'clock as gozen
//   the era names Heisei and Reiwa (in Japanese): the era of the date, whichever it is; the next year
//     field prints the era year. With E in front: the era's letter. With g behind: the character "gan"
//     for the first year.
//
// The length of a run of one numeric letter is the number of digits. Spaces in front of a one-letter run are
// its width: "  D" is the day in three columns. Everything else is copied, double-byte characters and
// escapes whole.
//
//   "YYYY/MM/DD hh:mm:ss" -> "2024/03/05 09:07:03"      "EW,  D EM YY" -> "Tue,  5 Mar 24"
std::size_t FormatDateText(std::string_view format, const CivilTime& time, char* out, std::size_t room);

inline constexpr std::string_view kInvalidDate = "(invalid date)";
inline constexpr std::size_t kDefaultFormRoom = 64;  // more than any default form needs

// Prints `time` as "Tue, 05 Mar 2024 09:07:03 +0900"; `bias` is minutes west of UTC. "(invalid date)" when
// the year is below 1601, the weekday above 6 or the month not 1 to 12. Returns the length; no terminating
// zero is written.
std::size_t DefaultDateForm(const CivilTime& time, std::int64_t bias, char (&out)[kDefaultFormRoom]);

// What the system tells about its time zone: `answer` is the call's result (0 no daylight saving time, 1
// standard time, 2 daylight saving time, else failure), the others are minutes west of UTC.
struct ZoneAnswer {
  std::uint32_t answer;
  std::int32_t bias;
  std::int32_t standard_bias;
  std::int32_t daylight_bias;
};

// The machine's minutes west of UTC. -540 (Japan) when the system's answer is none of the three, and for
// a bias of exactly 3, which no zone has.
constexpr std::int64_t MachineBias(const ZoneAnswer& zone) {
  constexpr std::int64_t kJapan = -540;
  std::int64_t bias = zone.bias;
  if (zone.answer > 2) return kJapan;
  if (zone.answer == 1) bias += zone.standard_bias;
  if (zone.answer == 2) bias += zone.daylight_bias;
  return bias == 3 ? kJapan : bias;
}

}  // namespace wfinfo
