#include "src/dates/date_any_form.h"

#include <cstddef>
#include <cstdint>

#include "src/text/ascii.h"
#include "src/text/host_text.h"

// What is read, as a grammar over tokens. Between any two may stand blanks, folds, comments, commas
// and points.
//
//   date   = *(weekday / day / month / year / joined / time / "AM" / "PM" / zone)   ; in any order
//   joined = D[D] "-" Mon ["-" year]                      ; "-", "/" or "." alike
//          / YYYY "-" Mon "-" D[D]                        ; alike
//          / YYYY "-" M[M] "-" D[D]                       ; alike
//          / D[D] "." M[M] "." YYYY
//          / D[D] ("-" / "/") M[M] ("-" / "/") YYYY       ; or month first: when only one of them is possible
//          / YYYYMMDD / YYYYMMDDhhmmss
//   time   = h[h] ":" m[m] [":" s[s]] [("." / ",") fraction]
//          / h[h] "." m[m] ["." s[s]] / "T" hhmm[ss]      ; behind a date
//   zone   = ("+" / "-") (h[h] / hmm / hhmm / hhmmss / h[h] ":" m[m])
//          / hhmm                                         ; behind date and time
//          / name [numeric zone]
//
// A bare number is the day first, then the year; four digits are always a year. Once date, time and a numeric
// zone are known the rest is not looked at; once date and time are known what cannot be read ends the date.
namespace wfinfo {

namespace {

using namespace date_parts;

enum class Reading { kGoesOn, kForeign, kRefused };

struct Number {
  std::uint64_t value;
  std::size_t digits;
};

class DateReader {
 public:
  // `parts`: what has been read in front of `text`.
  DateReader(std::string_view text, const Parts& parts)
      : at_(text.data()), end_(text.data() + text.size()), parts_(parts) {}

  std::optional<HeaderDate> Read() {
    while (!(numeric_zone_ && DateKnown())) {  // a numeric zone stands behind a time
      SkipBlanks();
      if (at_ == end_) break;
      const Reading reading = ReadToken();
      if (reading == Reading::kGoesOn) continue;
      if (reading == Reading::kRefused || !DateKnown() || !TimeKnown()) return std::nullopt;
      break;
    }
    return Assembled(parts_);
  }

 private:
  bool DateKnown() const { return parts_.day != 0 && parts_.month != 0 && parts_.year >= 0; }
  bool TimeKnown() const { return parts_.hour >= 0; }
  char Peek(std::size_t ahead = 0) const {
    return static_cast<std::size_t>(end_ - at_) > ahead ? at_[ahead] : '\0';
  }

  void SkipBlanks() {
    for (; at_ != end_; ++at_) {
      if (*at_ == '(') {
        SkipComment();
        if (at_ == end_) return;
      } else if (!IsSpace(*at_) && *at_ != ',') {
        return;
      }
    }
  }

  // Stops on the closing parenthesis. By units: the second byte of a character may look like a backslash.
  void SkipComment() {
    int depth = 0;
    while (at_ != end_) {
      if (*at_ == '(') ++depth;
      if (*at_ == ')' && --depth == 0) return;
      if (*at_ == '\\' && at_ + 1 != end_) ++at_;
      at_ += UnitLength({at_, static_cast<std::size_t>(end_ - at_)});
    }
  }

  Reading ReadToken() {
    const char c = *at_;
    if (IsDigit(c)) return ReadNumber();
    if (IsLetter(c)) return ReadWord();
    if (c == '+' || c == '-') return ReadSign();
    // A stray point ("Mar. 5"), and the colon of "05/Mar/2024:09:07:03".
    if (c != '.' && !(c == ':' && DateKnown() && !TimeKnown())) return Reading::kForeign;
    ++at_;
    return Reading::kGoesOn;
  }

  // A run of digits; more than 14 of them are of no use to anyone here.
  Number TakeNumber() {
    Number number{0, 0};
    for (; at_ != end_ && IsDigit(*at_); ++at_, ++number.digits) {
      if (number.digits < 18) number.value = number.value * 10 + static_cast<unsigned>(*at_ - '0');
    }
    return number;
  }

  // A number of one or two digits, blanks in front allowed; -1 for anything else.
  int TakeField() {
    while (at_ != end_ && IsSpace(*at_)) ++at_;
    const Number number = TakeNumber();
    return number.digits == 1 || number.digits == 2 ? static_cast<int>(number.value) : -1;
  }

  Reading ReadNumber() {
    const Number number = TakeNumber();
    const char next = Peek();
    const int value = static_cast<int>(number.value % 10'000);
    if (next == ':' && !TimeKnown() && number.digits <= 2) return ReadTime(value, ':');
    if (DateKnown()) {
      if (TimeKnown()) return ReadBareZone(number);
      if (next == '.' && IsDigit(Peek(1)) && number.digits <= 2) return ReadTime(value, '.');
      if (time_mark_ && (number.digits == 6 || number.digits == 4)) return TakeBasicTime(number);
    } else {
      if ((next == '-' || next == '/' || next == '.') && (IsDigit(Peek(1)) || IsLetter(Peek(1)))) {
        return ReadJoined(number);
      }
      if (number.digits == 8 || number.digits == 14) return TakeBasicDate(number);
    }
    return TakePlainNumber(number);
  }

  Reading TakePlainNumber(const Number& number) {
    const int value = static_cast<int>(number.value % 10'000);
    if (parts_.day == 0 && number.digits <= 2) {
      parts_.day = value == 0 ? -1 : value;  // the 0th is refused at the end
      SkipOrdinal();
      return Reading::kGoesOn;
    }
    const bool short_year =
        parts_.day != 0 && parts_.month != 0 && (number.digits == 2 || number.digits == 3);
    if (parts_.year >= 0 || (number.digits != 4 && !short_year)) return Reading::kForeign;
    parts_.year = YearOf(value, number.digits);
    return Reading::kGoesOn;
  }

  // "1st", "22nd", "3rd", "5th"
  void SkipOrdinal() {
    if (!IsLetter(Peek()) || !IsLetter(Peek(1)) || IsLetter(Peek(2))) return;
    const std::uint32_t letters = Packed({at_, 2});
    for (const std::string_view ending : {"st", "nd", "rd", "th"}) {
      if (letters == Packed(ending)) at_ += 2;
    }
  }

  // A zone that lost its sign: "09:07:03 0900" is east.
  Reading ReadBareZone(const Number& number) {
    if (number.digits != 4) return Reading::kForeign;
    SetNumericZone(static_cast<int>(number.value / 100), static_cast<int>(number.value % 100), false);
    return Reading::kGoesOn;
  }

  // The parts of a date joined by "-", "/" or "."; the first number is read, `at_` is on the separator.
  Reading ReadJoined(const Number& first) {
    if (parts_.day != 0 || parts_.month != 0 || first.digits > 4) return Reading::kRefused;
    const char separator = *at_++;
    const bool named = IsLetter(*at_);
    const Number second = named ? Number{0, 0} : TakeNumber();
    if (named) {
      const CalendarName* const month = FindName(TakeWord());
      if (month == nullptr || month->month == 0) return Reading::kRefused;
      parts_.month = month->month;
    }
    Number third{0, 0};
    if (Peek() == separator && IsDigit(Peek(1))) {
      ++at_;
      third = TakeNumber();
    }
    return named ? JoinNamed(first, third) : JoinNumbers(first, second, third, separator);
  }

  // "5-Mar", "5-Mar-24", "2024-Mar-05"
  Reading JoinNamed(const Number& first, const Number& third) {
    const bool year_first = first.digits == 4;
    const Number& day = year_first ? third : first;
    const Number& year = year_first ? first : third;
    if (day.digits < 1 || day.digits > 2 || year.digits > 4) return Reading::kRefused;
    if (year.digits > 0 && parts_.year >= 0) return Reading::kRefused;
    parts_.day = day.value == 0 ? -1 : static_cast<int>(day.value);
    if (year.digits == 0) return Reading::kGoesOn;
    parts_.year = YearOf(static_cast<int>(year.value), year.digits);
    return parts_.year >= 0 ? Reading::kGoesOn : Reading::kRefused;
  }

  Reading JoinNumbers(const Number& first, const Number& second, const Number& third, char separator) {
    const auto small = [](const Number& n) { return n.digits == 1 || n.digits == 2; };
    if (!small(second) || parts_.year >= 0) return Reading::kRefused;
    if (first.digits == 4 && small(third)) return TakeDate(first.value, second.value, third.value);
    if (!small(first) || third.digits != 4) return Reading::kRefused;
    // Points are written where the day comes first; with others the order is known only from the numbers.
    if (separator == '.' || first.value > 12 || first.value == second.value) {
      return TakeDate(third.value, second.value, first.value);
    }
    if (second.value > 12) return TakeDate(third.value, first.value, second.value);
    return Reading::kRefused;
  }

  Reading TakeDate(std::uint64_t year, std::uint64_t month, std::uint64_t day) {
    if (month == 0 || day == 0) return Reading::kRefused;
    parts_.year = static_cast<int>(year);
    parts_.month = static_cast<int>(month);
    parts_.day = static_cast<int>(day);
    return Reading::kGoesOn;
  }

  // YYYYMMDD, YYYYMMDDhhmmss
  Reading TakeBasicDate(const Number& number) {
    if (parts_.day != 0 || parts_.month != 0 || parts_.year >= 0) return Reading::kRefused;
    std::uint64_t date = number.value;
    if (number.digits == 14) {
      if (TimeKnown()) return Reading::kRefused;
      TakeBasicTime({date % 1'000'000, 6});
      date /= 1'000'000;
    }
    return TakeDate(date / 10'000, date / 100 % 100, date % 100);
  }

  // hhmm, hhmmss
  Reading TakeBasicTime(const Number& number) {
    const int time = static_cast<int>(number.digits == 4 ? number.value * 100 : number.value);
    SetTime(time / 10'000, time / 100 % 100, time % 100);
    return Reading::kGoesOn;
  }

  // The hour is read, `at_` is on the separator. One-digit fields may be padded with blanks: "9: 7: 3".
  Reading ReadTime(int hour, char separator) {
    ++at_;
    const int minute = TakeField();
    int second = 0;
    if (minute >= 0 && Peek() == separator) {
      ++at_;
      second = TakeField();
    }
    if (minute < 0 || second < 0 || hour > 24) return Reading::kRefused;
    SetTime(hour, minute, second);
    if ((Peek() == '.' || Peek() == ',') && IsDigit(Peek(1))) {
      ++at_;
      TakeNumber();  // a fraction of a second is dropped
    }
    return Reading::kGoesOn;
  }

  void SetTime(int hour, int minute, int second) {
    parts_.hour = hour;
    parts_.minute = minute;
    parts_.second = second;
  }

  std::string_view TakeWord() {
    const char* const start = at_;
    while (at_ != end_ && IsLetter(*at_)) ++at_;
    return {start, static_cast<std::size_t>(at_ - start)};
  }

  Reading ReadWord() {
    const std::string_view word = TakeWord();
    if (const CalendarName* const name = FindName(word)) {
      if (name->month == 0) return Reading::kGoesOn;
      if (parts_.month != 0) return Reading::kForeign;
      parts_.month = name->month;
      return Reading::kGoesOn;
    }
    if (DateKnown() && !TimeKnown() && word.size() == 1 && Lower(word[0]) == 't' && IsDigit(Peek())) {
      time_mark_ = true;
      return Reading::kGoesOn;
    }
    if (TimeKnown() && IsHalfDay(word)) return TakeHalfDay(Lower(word[0]));
    return TakeZoneName(word);
  }

  // "am", "pm", or the first letter of "a.m.", "p.m.", whose rest is skipped.
  bool IsHalfDay(std::string_view word) {
    if (Lower(word[0]) != 'a' && Lower(word[0]) != 'p') return false;
    if (word.size() == 2) return Lower(word[1]) == 'm';
    if (word.size() != 1 || Peek() != '.' || Lower(Peek(1)) != 'm' || IsLetter(Peek(2))) return false;
    at_ += 2;
    return true;
  }

  // A time on the 24-hour clock stays as it is: "21:07 PM".
  Reading TakeHalfDay(char letter) {
    if (parts_.hour <= 12) parts_.hour = parts_.hour % 12 + (letter == 'p' ? 12 : 0);
    return Reading::kGoesOn;
  }

  // A name stands for its zone until a numeric one follows ("GMT+0900", "JST +0900"). An unknown name behind
  // a whole date and time ("Tokyo Standard Time") says nothing.
  Reading TakeZoneName(std::string_view word) {
    if (!DateKnown() && !TimeKnown()) return Reading::kForeign;
    if (!TimeKnown() && word.size() == 1) return Reading::kForeign;
    if (const ZoneName* const zone = FindZone(word)) {
      if (!parts_.has_zone) parts_.zone_minutes = zone->minutes;
      parts_.has_zone = true;
      return Reading::kGoesOn;
    }
    return DateKnown() && TimeKnown() ? Reading::kGoesOn : Reading::kForeign;
  }

  // Behind a time a sign begins a zone; before it a "-" only separates.
  Reading ReadSign() {
    const bool west = *at_++ == '-';
    if (!TimeKnown()) return west && DateKnown() ? Reading::kGoesOn : Reading::kForeign;
    if (Peek() == '+' || Peek() == '-') return Reading::kGoesOn;  // "--0900": the last one counts
    while (at_ != end_ && IsSpace(*at_)) ++at_;
    const Number number = TakeNumber();
    if (number.digits == 0 || numeric_zone_) return Reading::kForeign;
    const int value = static_cast<int>(number.value % 1'000'000);
    if (number.digits <= 2) {
      SetNumericZone(value, TakeZoneMinutes(), west);
    } else if (number.digits <= 4) {
      SetNumericZone(value / 100, value % 100, west);
    } else {
      SetNumericZone(value / 10'000, number.digits == 6 ? value / 100 % 100 : -1,
                     west);  // seconds are dropped
    }
    return Reading::kGoesOn;
  }

  // The ":mm" behind one or two digits of hours; 0 without, -1 when malformed.
  int TakeZoneMinutes() {
    if (Peek() != ':' || !IsDigit(Peek(1))) return 0;
    ++at_;
    return TakeField();
  }

  // A zone beyond a day or with 60 minutes or more is none, but the written time stands.
  void SetNumericZone(int hours, int minutes, bool west) {
    numeric_zone_ = true;
    parts_.has_zone = hours < 24 && minutes >= 0 && minutes < 60;
    const int east = hours * 60 + minutes;
    parts_.zone_minutes = !parts_.has_zone ? 0 : west ? -east : east;
  }

  const char* at_;
  const char* const end_;
  Parts parts_;
  bool time_mark_ = false;     // the T of ISO 8601 was the last token
  bool numeric_zone_ = false;  // a numeric zone has been read
};

}  // namespace

std::optional<HeaderDate> ReadAnyForm(std::string_view text, const Parts& parts) {
  return DateReader(text, parts).Read();
}

}  // namespace wfinfo
