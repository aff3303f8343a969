#include "src/dates/date_parse.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "src/dates/date_any_form.h"
#include "src/dates/date_names.h"
#include "src/dates/date_parts.h"

// The forms that nearly all dates of mails have are read at one go:
//
//   [Weekday, ]D[D] Mon YY[YY] hh:mm:ss [zone]     the same with "-" around the month
//   Www Mon DD hh:mm:ss YYYY [zone]                as asctime prints it
//
// No branch depends on how wide a part is: mails of many senders mix the widths. All other forms, and all
// other zones, are left to the reader of every form.
namespace wfinfo {

namespace {

using namespace date_parts;

std::uint32_t Load4(const char* at) {
  std::uint32_t value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

std::uint64_t Load8(const char* at) {
  std::uint64_t value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

constexpr int kNoNumber = -1;

// Four digits, or kNoNumber.
int FourDigits(std::uint32_t bytes) {
  const std::uint32_t digits = bytes ^ 0x30303030U;
  if (((digits | (digits + 0x06060606U)) & 0xF0F0F0F0U) != 0) return kNoNumber;
  const std::uint32_t pairs = digits * 10 + (digits >> 8);  // in bytes 0 and 2
  return static_cast<int>((pairs & 0xFF) * 100 + (pairs >> 16 & 0xFF));
}

// "hh:mm:ss" into `parts`; false for any other shape.
bool TakeClock(const char* at, Parts& parts) {
  constexpr std::uint64_t kShape = 0x30303A30303A3030U;  // "00:00:00"
  const std::uint64_t digits = Load8(at) ^ kShape;
  // Colons leave zero bytes, digits at most 9.
  if (((digits | (digits + 0x0606000606000606U)) & 0xF0F0FFF0F0FFF0F0U) != 0) return false;
  const std::uint64_t pairs = digits * 10 + (digits >> 8);  // in bytes 0, 3 and 6
  parts.hour = static_cast<int>(pairs & 0xFF);
  parts.minute = static_cast<int>(pairs >> 24 & 0xFF);
  parts.second = static_cast<int>(pairs >> 48 & 0xFF);
  return true;
}

// Three letters as NameOfLetters wants them, or 0 when one of the three bytes is no letter.
std::uint32_t ThreeLetters(const char* at) {
  const std::uint32_t bytes = Load4(at) & 0xFFFFFFU;
  return (bytes & 0x404040U) == 0x404040U ? bytes | 0x202020U : 0;
}

const CalendarName* WeekdayAt(const char* at) {
  const CalendarName* const name = NameOfLetters(ThreeLetters(at));
  return name != nullptr && name->month == 0 ? name : nullptr;
}

// 1 to 12; 0 for any other word.
int MonthAt(const char* at) {
  const CalendarName* const name = NameOfLetters(ThreeLetters(at));
  return name != nullptr ? name->month : 0;
}

// True when nothing that belongs to a number or word stands at `at`.
bool EndsThere(std::string_view text, std::size_t at) {
  return at == text.size() || IsSpace(text[at]) || text[at] == '(';
}

constexpr std::size_t kBlock = 16;
constexpr std::size_t kLeastInFront =
    9;                             // "D Mon YY "; at most 24, so that a block holds every clock's colon
constexpr std::size_t kClock = 8;  // "hh:mm:ss"

// Where the first colon stands that may be the clock's of the form below; the length without one. `text` has
// room for its shortest.
std::size_t FirstColon(std::string_view text) {
  const std::size_t from = std::min(kLeastInFront + 2, text.size() - kBlock);
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + from));
  const __m128i colons = _mm_cmpeq_epi8(block, _mm_set1_epi8(':'));
  const auto places = static_cast<std::uint32_t>(_mm_movemask_epi8(colons));
  return places != 0 ? from + static_cast<std::size_t>(std::countr_zero(places)) : text.size();
}

// True for a weekday, whole or of three letters, a comma and a blank or two, which end at `end`. Behind that
// the text goes on for more than eight bytes.
bool IsWeekdayInFront(const char* at, const char* end) {
  const CalendarName* const name = WeekdayAt(at);
  if (name == nullptr) return false;
  const char* comma = at + kNameAbbreviation;
  if (*comma != ',') {
    const std::size_t more = name->name.size() - kNameAbbreviation;
    const std::uint64_t letters = Load8(comma) | 0x2020202020202020U;
    if (((letters ^ name->rest) << 8 * (sizeof letters - more)) != 0) return false;
    comma += more;
  }
  const std::size_t blanks = comma[2] == ' ' ? 2 : 1;
  return comma[0] == ',' && comma[1] == ' ' && comma + 1 + blanks == end;
}

// Reads "[Weekday, ]D[D] Mon YY[YY] hh:mm:ss", or the same with "-" around the month, which nearly all mails
// begin with, when a blank, a comment or the end of the text follows; from the first colon backwards. Returns
// its length; 0 for any other text.
std::size_t TakeUsualHead(std::string_view text, Parts& parts) {
  constexpr std::ptrdiff_t kToMonth = 6;  // "D Mon "
  if (text.size() < kLeastInFront + kClock) return 0;
  const std::size_t colon = FirstColon(text);
  if (colon < kLeastInFront + 2 || colon + kClock - 2 > text.size() || !EndsThere(text, colon + kClock - 2))
    return 0;
  const std::size_t at = colon - 2;
  const char* const begin = text.data();
  const char* const clock = begin + at;
  const bool four = IsDigit(clock[-4]);
  const char* const year = clock - (four ? 5 : 3);
  const char separator = year[-1];
  if (year - begin < kToMonth || year[-5] != separator || (separator != ' ' && separator != '-')) return 0;
  const bool two = year - begin > kToMonth && IsDigit(year[-kToMonth - 1]);
  const char* const day = year - kToMonth - (two ? 1 : 0);
  const int written = FourDigits((Load4(clock - 5) & (four ? ~0U : 0xFFFF0000U)) | (four ? 0 : 0x3030U));
  parts.month = MonthAt(year - 4);
  parts.day = (two ? (day[0] - '0') * 10 : 0) + (year[-kToMonth] - '0');
  parts.year = YearOf(written, four ? 4 : 2);
  const bool read = clock[-1] == ' ' && IsDigit(year[-kToMonth]) && parts.day != 0 && parts.month != 0 &&
                    written >= 0 && TakeClock(clock, parts);
  return read && (day == begin || IsWeekdayInFront(begin, day)) ? at + kClock : 0;
}

// Reads "Www Mon DD hh:mm:ss YYYY", as asctime prints it, likewise; a day of one digit has a blank in front.
std::size_t TakeAsctimeHead(std::string_view text, Parts& parts) {
  constexpr std::size_t kLength = 24;
  if (text.size() < kLength || !EndsThere(text, kLength)) return 0;
  const char* const at = text.data();
  if (at[3] != ' ' || at[7] != ' ' || at[10] != ' ' || at[19] != ' ' || WeekdayAt(at) == nullptr) return 0;
  parts.month = MonthAt(at + 4);
  parts.day = (at[8] == ' ' ? 0 : at[8] - '0') * 10 + (at[9] - '0');
  parts.year = FourDigits(Load4(at + 20));
  const bool digits = (at[8] == ' ' || IsDigit(at[8])) && IsDigit(at[9]);
  const bool read =
      digits && parts.month != 0 && parts.day != 0 && parts.year >= 0 && TakeClock(at + 11, parts);
  return read ? kLength : 0;
}

// Reads " +hhmm" or " -hhmm" when the text ends there or a blank or comment follows.
bool TakeUsualZone(std::string_view text, Parts& parts) {
  constexpr std::size_t kLength = 6;
  if (text.size() < kLength || text[0] != ' ' || (text[1] != '+' && text[1] != '-')) return false;
  if (text.size() > kLength && !IsSpace(text[kLength]) && text[kLength] != '(') return false;
  const int zone = FourDigits(Load4(text.data() + 2));
  if (zone < 0 || zone >= 2400 || zone % 100 >= 60) return false;
  const int minutes = zone / 100 * 60 + zone % 100;
  parts.has_zone = true;
  parts.zone_minutes = text[1] == '-' ? -minutes : minutes;
  return true;
}

// Reads " Xxx" when that is a zone's name of three letters and the end of the text.
bool TakeUsualZoneName(std::string_view text, Parts& parts) {
  if (text.size() != 4 || text[0] != ' ' || !IsLetter(text[1])) return false;
  const ZoneName* const zone = FindZone(text.substr(1));
  if (zone == nullptr) return false;
  parts.has_zone = true;
  parts.zone_minutes = zone->minutes;
  return true;
}

}  // namespace

std::optional<HeaderDate> ReadAnyHeaderDate(std::string_view text) { return ReadAnyForm(text, {}); }

std::optional<HeaderDate> ReadHeaderDate(std::string_view text) {
  Parts parts;
  std::size_t head = TakeUsualHead(text, parts);
  if (head == 0) head = TakeAsctimeHead(text, parts);
  if (head == 0) return ReadAnyHeaderDate(text);
  const std::string_view zone = text.substr(head);
  if (zone.empty() || TakeUsualZone(zone, parts) || TakeUsualZoneName(zone, parts)) return Assembled(parts);
  return ReadAnyForm(zone, parts);
}

}  // namespace wfinfo
