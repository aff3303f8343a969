#include "src/dates/date_format.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "src/dates/date_names.h"
#include "src/text/host_text.h"

namespace wfinfo {

namespace {

// "00", "01" to "99", side by side.
constexpr std::array<char, 200> kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

// Copies at most 16 bytes, as names and units are, in pieces that may overlap; that beats a call.
inline void CopyShort(char* to, const char* from, std::size_t count) {
  const auto ends = [=](std::size_t piece) {
    std::memcpy(to, from, piece);
    std::memcpy(to + count - piece, from + count - piece, piece);
  };
  if (count >= 8) {
    ends(8);
  } else if (count >= 4) {
    ends(4);
  } else if (count >= 2) {
    ends(2);
  } else if (count == 1) {
    *to = *from;
  }
}

// Writes what fits and counts the rest.
class Writer {
 public:
  Writer(char* out, std::size_t room) : out_(out), room_(room) {}

  std::size_t length() const { return length_; }

  void Byte(char byte) {
    if (length_ < room_) out_[length_] = byte;
    ++length_;
  }

  void Text(std::string_view text) {
    if (length_ < room_) CopyShort(out_ + length_, text.data(), std::min(text.size(), room_ - length_));
    length_ += text.size();
  }

  void Repeat(char byte, std::size_t count) {
    if (length_ < room_) std::memset(out_ + length_, byte, std::min(count, room_ - length_));
    length_ += count;
  }

  // The two usual cases of Number, padded with zeros.
  void TwoDigits(unsigned value) {
    if (value > 99 || length_ + 2 > room_) return Number(value, 2, '0');
    std::memcpy(out_ + length_, kPairs.data() + 2 * value, 2);
    length_ += 2;
  }

  void FourDigits(unsigned value) {
    if (value > 9999 || length_ + 4 > room_) return Number(value, 4, '0');
    TwoDigits(value / 100);
    TwoDigits(value % 100);
  }

  // `value` in at least `columns` columns, filled up in front with `fill`.
  void Number(std::uint64_t value, std::size_t columns, char fill) {
    char digits[20];
    char* first = digits + sizeof digits;
    do {
      *--first = static_cast<char>('0' + value % 10);
      value /= 10;
    } while (value != 0);
    const auto count = static_cast<std::size_t>(digits + sizeof digits - first);
    if (count < columns) Repeat(fill, columns - count);
    while (first != digits + sizeof digits) Byte(*first++);
  }

 private:
  char* out_;
  std::size_t room_;
  std::size_t length_ = 0;
};

// --- Japanese names, as host text ----------------------------------------------------------------------
constexpr std::string_view kJapaneseWeekdays[] = {"\x93\xFA", "\x8C\x8E", "\x89\xCE", "\x90\x85",
                                                  "\x96\xD8", "\x8B\xE0", "\x93\x79"};
constexpr std::string_view kGozen = "\x8C\xDF\x91\x4F";   // before noon
constexpr std::string_view kGogo = "\x8C\xDF\x8C\xE3";    // after noon
constexpr std::string_view kHeisei = "\x95\xBD\x90\xAC";  // the era names that ask for an era in a format
constexpr std::string_view kReiwa = "\x97\xDF\x98\x61";
constexpr std::string_view kGan = "\x8C\xB3";  // "first", of an era's first year

struct Era {
  std::uint32_t from;  // year * 10000 + month * 100 + day
  std::string_view name;
  std::string_view letter;
  int year_before;  // the Gregorian year that would be the era's year 0
};

// The latest first. Each era ends where the next begins.
constexpr Era kEras[] = {
    {20190501, kReiwa, "R", 2018},
    {19890108, kHeisei, "H", 1988},
    {19261225, "\x8F\xBA\x98\x61", "S", 1925},  // Showa
    {19120730, "\x91\xE5\x90\xB3", "T", 1911},  // Taisho
    {18680908, "\x96\xBE\x8E\xA1", "M", 1867},  // Meiji
};

const Era* EraOf(const CivilTime& time) {
  const std::uint32_t date = time.year * 10'000U + time.month * 100U + time.day;
  for (const Era& era : kEras) {
    if (date >= era.from) return &era;
  }
  return nullptr;
}

// --- Numeric fields ------------------------------------------------------------------------------------
constexpr std::string_view kNumericLetters = "YMDhkKms";  // in the order of NumericValues
constexpr std::size_t kYear = 0;

std::array<unsigned, kNumericLetters.size()> NumericValues(const CivilTime& t) {
  const unsigned half_day_hour = t.hour % 12U;
  // K: noon is 12, midnight 0.
  return {t.year,   t.month, t.day, t.hour, half_day_hour, t.hour == 12 ? 12U : half_day_hour,
          t.minute, t.second};
}

// --- Name fields ---------------------------------------------------------------------------------------
template <std::size_t kSize>
std::string_view NameAt(const std::string_view (&names)[kSize], std::size_t index) {
  return index < kSize ? names[index] : std::string_view("");  // a record may hold anything
}

std::string_view WeekdayName(const CivilTime& t) { return NameAt(kWeekdayNames, t.weekday); }
std::string_view MonthName(const CivilTime& t) { return NameAt(kMonthNames, t.month - 1U); }

// Up to three bytes of a format as one number, the first lowest.
constexpr std::uint32_t Packed(std::string_view text) {
  std::uint32_t packed = 0;
  for (std::size_t i = 0; i < text.size() && i < 3; ++i) {
    packed |= static_cast<std::uint32_t>(static_cast<unsigned char>(text[i])) << (8 * i);
  }
  return packed;
}

struct NameField {
  constexpr NameField(std::string_view letters, std::string_view (*name_of)(const CivilTime& time))
      : field(letters), packed(Packed(letters)), mask((1U << (8 * letters.size())) - 1), name(name_of) {}

  std::string_view field;
  std::uint32_t packed;
  std::uint32_t mask;
  std::string_view (*name)(const CivilTime& time);
};

constexpr NameField kNameFields[] = {
    {"W", [](const CivilTime& t) { return NameAt(kJapaneseWeekdays, t.weekday); }},
    {"EW", [](const CivilTime& t) { return WeekdayName(t).substr(0, kNameAbbreviation); }},
    {"EFW", WeekdayName},
    {"EM", [](const CivilTime& t) { return MonthName(t).substr(0, kNameAbbreviation); }},
    {"EFM", MonthName},
    {"i", [](const CivilTime& t) -> std::string_view { return t.hour < 12 ? "AM" : "PM"; }},
    // J goes with K, where noon is 12: the hour of noon still counts as before noon.
    {"J", [](const CivilTime& t) { return t.hour < 13 ? kGozen : kGogo; }},
    {"j", [](const CivilTime& t) { return t.hour < 12 ? kGozen : kGogo; }},
};

// --- The walk over the format --------------------------------------------------------------------------

// What a byte of the format may begin: one of these, or from kNumber on the field
// kNumericLetters[lead - kNumber]. A lead byte of a unit may begin an era name.
enum Lead : std::uint8_t { kCopied, kUnit, kSpace, kName, kNumber };

constexpr std::array<std::uint8_t, 256> kLeads = [] {
  std::array<std::uint8_t, 256> leads{};
  for (std::size_t byte = 0; byte < leads.size(); ++byte) {
    if (IsLeadByte(static_cast<char>(byte))) leads[byte] = kUnit;
  }
  leads[static_cast<unsigned char>(kEscapeByte)] = kUnit;
  leads[' '] = kSpace;
  for (const NameField& field : kNameFields) leads[static_cast<unsigned char>(field.field[0])] = kName;
  for (std::size_t i = 0; i < kNumericLetters.size(); ++i) {
    leads[static_cast<unsigned char>(kNumericLetters[i])] = static_cast<std::uint8_t>(kNumber + i);
  }
  return leads;
}();

class DateFormatter {
 public:
  DateFormatter(const CivilTime& time, char* out, std::size_t room)
      : time_(time), values_(NumericValues(time)), writer_(out, room) {}

  std::size_t Format(std::string_view format) {
    while (!format.empty()) format.remove_prefix(Step(format));
    WriteSpaces();
    return writer_.length();
  }

 private:
  // Handles what `rest` begins with and returns its length.
  std::size_t Step(std::string_view rest) {
    const std::uint8_t lead = kLeads[static_cast<unsigned char>(rest[0])];
    if (lead >= kNumber) return NumberField(rest, lead - static_cast<std::size_t>(kNumber));
    if (lead == kSpace) {
      ++spaces_;
      return 1;
    }
    WriteSpaces();
    if (lead == kCopied) {
      writer_.Byte(rest[0]);
      return 1;
    }
    if (const std::size_t length = lead == kName ? NameOrEra(rest) : EraField(rest, false)) return length;
    const std::string_view unit = NextUnit(rest);
    writer_.Text(unit);
    return unit.size();
  }

  void WriteSpaces() {
    if (spaces_ == 0) return;
    writer_.Repeat(' ', spaces_);
    spaces_ = 0;
  }

  std::size_t NumberField(std::string_view rest, std::size_t index) {
    std::size_t length = 1;
    while (length < rest.size() && rest[length] == rest[0]) ++length;
    if (index == kYear) {
      YearField(length);
    } else {
      Number(values_[index], length);
    }
    return length;
  }

  void Number(unsigned value, std::size_t length) {
    if (length == 1) {
      writer_.Number(value, spaces_ + 1, ' ');
      spaces_ = 0;
      return;
    }
    WriteSpaces();
    if (length == 2) return writer_.TwoDigits(value);
    if (length == 4) return writer_.FourDigits(value);
    writer_.Number(value, length, '0');
  }

  void YearField(std::size_t length) {
    unsigned year = values_[kYear];
    const Era* const era = era_year_pending_ ? EraOf(time_) : nullptr;
    const bool gan = gan_asked_;
    era_year_pending_ = gan_asked_ = false;
    if (era != nullptr) year -= static_cast<unsigned>(era->year_before);
    if (era != nullptr && gan && year == 1 && length <= 2) {
      WriteSpaces();
      writer_.Text(kGan);
      return;
    }
    if (length == 2 && year >= 1900) year %= 100;
    Number(year, length);
  }

  // 0 when `rest` begins with neither.
  std::size_t NameOrEra(std::string_view rest) {
    const std::uint32_t packed = Packed(rest);
    for (const NameField& field : kNameFields) {
      if ((packed & field.mask) != field.packed) continue;
      writer_.Text(field.name(time_));
      return field.field.size();
    }
    return EraField(rest, true);  // no other letter than E begins a longer name
  }

  // An era name, behind an E when the letter is asked for; 0 for anything else.
  std::size_t EraField(std::string_view rest, bool letter_asked) {
    const std::size_t begin = letter_asked ? 1 : 0;
    const std::string_view name = rest.substr(begin);
    if (!name.starts_with(kHeisei) && !name.starts_with(kReiwa)) return 0;
    if (const Era* const era = EraOf(time_)) writer_.Text(letter_asked ? era->letter : era->name);
    era_year_pending_ = true;
    gan_asked_ = name.substr(kReiwa.size()).starts_with('g');
    return begin + kReiwa.size() + (gan_asked_ ? 1 : 0);
  }

  const CivilTime& time_;
  const std::array<unsigned, kNumericLetters.size()> values_;
  Writer writer_;
  std::size_t spaces_ = 0;         // not yet written
  bool era_year_pending_ = false;  // the next year field prints the era year
  bool gan_asked_ = false;         // and "gan" for 1
};

static_assert(kHeisei.size() == kReiwa.size());

}  // namespace

std::size_t FormatDateText(std::string_view format, const CivilTime& time, char* out, std::size_t room) {
  return DateFormatter(time, out, room).Format(format);
}

std::size_t DefaultDateForm(const CivilTime& time, std::int64_t bias, char (&out)[kDefaultFormRoom]) {
  Writer writer(out, sizeof out);
  if (time.year < kFirstYear || time.weekday > 6 || time.month < 1 || time.month > 12) {
    writer.Text(kInvalidDate);
    return writer.length();
  }
  const auto number = [&writer](unsigned value, char behind) {
    writer.TwoDigits(value);
    writer.Byte(behind);
  };
  writer.Text(WeekdayName(time).substr(0, kNameAbbreviation));
  writer.Text(", ");
  number(time.day, ' ');
  writer.Text(MonthName(time).substr(0, kNameAbbreviation));
  writer.Byte(' ');
  writer.Number(time.year, 2, '0');
  writer.Byte(' ');
  number(time.hour, ':');
  number(time.minute, ':');
  number(time.second, ' ');
  const auto minutes = static_cast<std::uint64_t>(bias < 0 ? -bias : bias);
  writer.Byte(bias <= 0 ? '+' : '-');
  writer.Number(minutes / 60, 2, '0');
  writer.Number(minutes % 60, 2, '0');
  return writer.length();
}

}  // namespace wfinfo
