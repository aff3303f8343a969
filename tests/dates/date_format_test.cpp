#include "src/dates/date_format.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <utility>

namespace wfinfo {
namespace {

constexpr CivilTime kTime = {2024, 3, 2, 5, 9, 7, 3, 0};  // Tuesday, 5 March 2024 09:07:03

std::string Formatted(std::string_view format, const CivilTime& time = kTime) {
  std::string text(format.size() * 5, '#');
  text.resize(FormatDateText(format, time, text.data(), text.size()));
  return text;
}

CivilTime AtHour(std::uint16_t hour) { return {2024, 3, 2, 5, hour, 30, 0, 0}; }
CivilTime OnDate(std::uint16_t year, std::uint16_t month, std::uint16_t day) {
  return {year, month, 0, day, 0, 0, 0, 0};
}

#define GOZEN "\x8C\xDF\x91\x4F"
#define GOGO "\x8C\xDF\x8C\xE3"
#define HEISEI "\x95\xBD\x90\xAC"
#define REIWA "\x97\xDF\x98\x61"
#define SHOWA "\x8F\xBA\x98\x61"
#define TAISHO "\x91\xE5\x90\xB3"
#define MEIJI "\x96\xBE\x8E\xA1"
#define GAN "\x8C\xB3"

struct FormatCase {
  std::string format;
  std::string expected;
  const char* why;
  CivilTime time = kTime;
};

TEST(DateFormat, FieldsPrintAsTheirTableSays) {
  const FormatCase cases[] = {
      {"", "", "an empty format"},
      {"YYYY/MM/DD hh:mm:ss", "2024/03/05 09:07:03", "all numbers"},
      {"YY", "24", "a two-letter year is modulo 100"},
      {"Y", "2024", "a one-letter year is whole"},
      {"YYY", "2024", "a number is never cut"},
      {"YYYYYY", "002024", "zeros fill a longer run"},
      {"YYYY", "30828", "a year of five digits", {30828, 9, 4, 14, 2, 48, 5, 477}},
      {"YY", "00", "modulo 100, two digits", OnDate(2000, 1, 1)},
      {"YY", "1899", "below 1900 there is no modulo", OnDate(1899, 1, 1)},
      {"YY", "00", "1900 is the first", OnDate(1900, 1, 1)},
      {"M/D h:m:s", "3/5 9:7:3", "one letter: no zeros"},
      {"MM DD hh mm ss", "03 05 09 07 03", "two letters"},
      {"DDDD", "0005", "four digits"},
      {"MMDD", "0305", "fields side by side"},
      {"h", "0", "midnight", AtHour(0)},
      {"h", "23", "the last hour", AtHour(23)},
      {"k", "0", "k at noon", AtHour(12)},
      {"K", "12", "K at noon", AtHour(12)},
      {"K", "0", "K at midnight is 0 all the same", AtHour(0)},
      {"k:K", "1:1", "one in the afternoon", AtHour(13)},
      {"kk", "11", "eleven at night", AtHour(23)},
      {"W", "\x89\xCE", "Japanese weekday"},
      {"EW EFW", "Tue Tuesday", "English weekdays"},
      {"EM EFM", "Mar March", "English months"},
      {"EMM", "Mar3", "the month's name, then its number"},
      {"i", "AM", "before noon", AtHour(11)},
      {"i", "PM", "noon", AtHour(12)},
      {"J", GOZEN, "twelve counts as morning for J", AtHour(12)},
      {"J", GOGO, "thirteen", AtHour(13)},
      {"j", GOZEN, "eleven", AtHour(11)},
      {"j", GOGO, "twelve for j", AtHour(12)},
      {"E", "E", "a lone E is copied"},
      {"EF", "EF", "an E that begins no field"},
      {"EFX", "EFX", "the same"},
      {"ED", "E5", "E in front of a number"},
      {"g", "g", "a g without an era"},
      {"o", "o", "an o is an ordinary letter here"},
      {"\x83\x59\x83\x4D", "\x83\x59\x83\x4D", "second bytes that look like Y and M"},
      {"\x83\x45\x57", "\x83\x45\x89\xCE", "a second byte E, then W"},
      {"\x1A\xCD\x80\x84Y",
       "\x1A\xCD\x80\x84"
       "2024",
       "an escape is one unit"},
      {"\x1A\x4D",
       "\x1A"
       "3",
       "a 0x1A that begins no escape"},
      {"D\x83", "5\x83", "a lead byte at the end"},
      {"\x95\xBD", "\x95\xBD", "half an era name"},
      {"\x95\xBD\x90", "\x95\xBD\x90", "a cut era name"},
      {"W EW EM EFM",
       "   ",
       "a record with impossible numbers prints no names",
       {2024, 13, 7, 5, 0, 0, 0, 0}},
      {"EM", "", "month 0", {2024, 0, 0, 5, 0, 0, 0, 0}},
  };
  for (const FormatCase& c : cases) EXPECT_EQ(Formatted(c.format, c.time), c.expected) << c.why;
}

TEST(DateFormat, SpacesInFrontOfAOneLetterNumberAreItsWidth) {
  const FormatCase cases[] = {
      {"  D", "  5", "three columns"},
      {"   D", "  31", "four columns, two digits", OnDate(2024, 3, 31)},
      {" D", " 5", "two columns"},
      {" D", "31", "the number fills them", OnDate(2024, 3, 31)},
      {" Y", "2024", "a number that is longer"},
      {"     Y", "  2024", "six columns"},
      {"  DD", "  05", "two letters: spaces as they are, zeros"},
      {" YY", " 24", "two letters: spaces as they are"},
      {"  EM", "  Mar", "names: spaces as they are"},
      {"  W", "  \x89\xCE", "Japanese names too"},
      {"a  b  ", "a  b  ", "spaces elsewhere and at the end"},
      {"  \x83\x59", "  \x83\x59", "in front of a double-byte character"},
      {"  " REIWA "Y", "  " REIWA "6", "in front of an era"},
      {REIWA " Y", REIWA " 6", "an era year in two columns"},
      {REIWA "g Y", REIWA " " GAN, "the first year as a character keeps the spaces", OnDate(2019, 5, 1)},
  };
  for (const FormatCase& c : cases) EXPECT_EQ(Formatted(c.format, c.time), c.expected) << c.why;
}

TEST(DateFormat, ErasBeginAndEndOnTheirDays) {
  const FormatCase cases[] = {
      {HEISEI "Y", "1868", "before the first era: no name, the year unchanged", OnDate(1868, 9, 7)},
      {HEISEI "Y", MEIJI "1", "first day of Meiji", OnDate(1868, 9, 8)},
      {HEISEI "Y", MEIJI "45", "last day of Meiji", OnDate(1912, 7, 29)},
      {HEISEI "Y", TAISHO "1", "first day of Taisho", OnDate(1912, 7, 30)},
      {HEISEI "Y", TAISHO "15", "last day of Taisho", OnDate(1926, 12, 24)},
      {HEISEI "Y", SHOWA "1", "first day of Showa", OnDate(1926, 12, 25)},
      {REIWA "Y", SHOWA "64", "last day of Showa", OnDate(1989, 1, 7)},
      {REIWA "Y", HEISEI "1", "first day of Heisei", OnDate(1989, 1, 8)},
      {REIWA "Y", HEISEI "31", "last day of Heisei", OnDate(2019, 4, 30)},
      {REIWA "Y", REIWA "1", "first day of Reiwa", OnDate(2019, 5, 1)},
      {REIWA "Y", REIWA "28810", "far away", OnDate(30828, 9, 14)},
      {"E" HEISEI "YY", "M01", "letter of Meiji", OnDate(1868, 9, 8)},
      {"E" HEISEI "YY", "T15", "letter of Taisho", OnDate(1926, 12, 24)},
      {"E" HEISEI "YY", "S64", "letter of Showa", OnDate(1989, 1, 7)},
      {"E" REIWA "YY", "H31", "letter of Heisei", OnDate(2019, 4, 30)},
      {"E" REIWA "YY", "R06", "letter of Reiwa"},
      {"E" REIWA "Y", "1600", "no letter before the eras", OnDate(1600, 1, 1)},
      {REIWA "YYYY", REIWA "0001", "a four-digit era year", OnDate(2019, 5, 1)},
      {REIWA "gY", REIWA GAN, "the first year as a character", OnDate(2019, 5, 1)},
      {REIWA "gYY", REIWA GAN, "also with two letters", OnDate(2019, 5, 1)},
      {REIWA "gYYY", REIWA "001", "but not with three", OnDate(2019, 5, 1)},
      {REIWA "gY", HEISEI "31", "a later year is a number", OnDate(2019, 4, 30)},
      {"E" REIWA "gY", "R" GAN, "with the letter", OnDate(2019, 5, 1)},
      {REIWA " gY", REIWA " g1", "a g that does not follow at once is copied", OnDate(2019, 5, 1)},
      {REIWA "ggY", REIWA "g" GAN, "only the first g belongs to the era", OnDate(2019, 5, 1)},
      {REIWA "Y(Y)", REIWA "6(2024)", "later years are Gregorian again"},
      {REIWA "gY Y", REIWA GAN "2019", "also behind the character", OnDate(2019, 5, 1)},
      {"YY" REIWA "D", "24" REIWA "5", "a year in front of the era is Gregorian"},
      {REIWA "Y" HEISEI "Y", REIWA "6" REIWA "6", "each era field asks again"},
      {REIWA "gY", "1", "year 1 without an era is a number", OnDate(1, 1, 1)},
  };
  for (const FormatCase& c : cases) EXPECT_EQ(Formatted(c.format, c.time), c.expected) << c.why;
}

TEST(DateFormat, WhatDoesNotFitIsOnlyCounted) {
  const std::string format = "Y DD YYYY EFW " REIWA "Y" GAN "    DDDDD JJJ\x1A\xCD\x80\x84";
  const std::string whole = Formatted(format);
  for (std::size_t room = 0; room <= whole.size(); ++room) {
    std::string out(room + 4, '#');
    EXPECT_EQ(FormatDateText(format, kTime, out.data(), room), whole.size());
    EXPECT_EQ(out, whole.substr(0, room) + "####");
  }
}

TEST(DateFormat, AFieldEndsWithTheFormatWhateverStandsBehind) {
  const std::string_view behind = "YYYYDDDD";
  char out[16];
  for (const auto& [length, expected] : {std::pair{1u, "2024"}, {2u, "24"}, {5u, "20245"}, {6u, "202405"}}) {
    EXPECT_EQ(std::string(out, FormatDateText(behind.substr(0, length), kTime, out, sizeof out)), expected);
  }
}

TEST(DateFormat, AByteOfFormatNeverBecomesMoreThanFive) {
  const CivilTime longest = {65535, 9, 3, 65535, 65535, 65535, 65535, 0};
  const std::string_view pieces[] = {
      "Y",   "M",   "D", "h", "k", "K",    "m",       "s", "W", "EW",       "EFW",
      "EM",  "EFM", "i", "J", "j", HEISEI, "E" REIWA, "g", " ", "\x83\x59", "\x1A\xCD\x80\x84",
      "\x83"};
  std::mt19937 random(7);
  for (int i = 0; i < 20'000; ++i) {
    std::string format;
    for (auto n = random() % 12; n > 0; --n) format += pieces[random() % std::size(pieces)];
    EXPECT_LE(FormatDateText(format, longest, nullptr, 0), 5 * format.size());
  }
}

std::string DefaultForm(const CivilTime& time, std::int64_t bias) {
  char out[kDefaultFormRoom];
  return {out, DefaultDateForm(time, bias, out)};
}

struct DefaultCase {
  CivilTime time;
  std::int64_t bias;
  const char* expected;
  const char* why;
};

TEST(DateFormat, TheDefaultFormIsThatOfMailHeaders) {
  const DefaultCase cases[] = {
      {kTime, -540, "Tue, 05 Mar 2024 09:07:03 +0900", "Japan"},
      {kTime, 0, "Tue, 05 Mar 2024 09:07:03 +0000", "a bias of 0 is printed with a plus"},
      {kTime, 480, "Tue, 05 Mar 2024 09:07:03 -0800", "west"},
      {kTime, 210, "Tue, 05 Mar 2024 09:07:03 -0330", "half hours west"},
      {kTime, -345, "Tue, 05 Mar 2024 09:07:03 +0545", "quarters of an hour east"},
      {kTime, 1, "Tue, 05 Mar 2024 09:07:03 -0001", "a minute"},
      {kTime, -6000, "Tue, 05 Mar 2024 09:07:03 +10000", "a hundred hours"},
      {{1601, 1, 1, 1, 0, 0, 0, 0}, 0, "Mon, 01 Jan 1601 00:00:00 +0000", "the first year"},
      {{30828, 9, 4, 14, 2, 48, 5, 477}, 0, "Thu, 14 Sep 30828 02:48:05 +0000", "the last"},
      {{1600, 12, 0, 31, 0, 0, 0, 0}, 0, "(invalid date)", "before 1601"},
      {{2024, 3, 7, 5, 0, 0, 0, 0}, 0, "(invalid date)", "weekday 7"},
      {{2024, 0, 2, 5, 0, 0, 0, 0}, 0, "(invalid date)", "month 0"},
      {{2024, 13, 2, 5, 0, 0, 0, 0}, 0, "(invalid date)", "month 13"},
      {{65535, 12, 6, 65535, 65535, 65535, 65535, 0},
       -4'294'967'296,
       "Sat, 65535 Dec 65535 65535:65535:65535 +7158278816",
       "nothing overruns"},
  };
  for (const DefaultCase& c : cases) EXPECT_EQ(DefaultForm(c.time, c.bias), c.expected) << c.why;
}

struct ZoneCase {
  ZoneAnswer zone;
  std::int64_t bias;
  const char* why;
};

TEST(DateFormat, TheMachinesZoneFollowsTheSystemsAnswer) {
  const ZoneCase cases[] = {
      {{0, -540, 0, -60}, -540, "no daylight saving time: as it stands"},
      {{0, -60, 5, -60}, -60, "the other biases do not count then"},
      {{1, 300, 0, -60}, 300, "standard time"},
      {{1, 300, 5, -60}, 305, "standard time with a bias of its own"},
      {{2, 300, 0, -60}, 240, "daylight saving time"},
      {{3, 300, 0, -60}, -540, "an unknown answer"},
      {{0xFFFFFFFF, 0, 0, 0}, -540, "failure"},
      {{0, 3, 0, 0}, -540, "a bias of exactly 3 minutes"},
      {{1, 0, 3, 0}, -540, "also when the sum is 3"},
      {{2, 3, 0, -60}, -57, "but not 3 with daylight saving time added"},
      {{0, -3, 0, 0}, -3, "nor 3 minutes east"},
      {{2, 2'147'483'647, 0, 2'147'483'647}, 4'294'967'294, "sums do not overflow"},
  };
  for (const ZoneCase& c : cases) EXPECT_EQ(MachineBias(c.zone), c.bias) << c.why;
  EXPECT_EQ(DefaultForm(kTime, MachineBias({0, 3, 0, 0})), "Tue, 05 Mar 2024 09:07:03 +0900");
}

// The slow reference: the C library, for the formats that it can print too.
TEST(DateFormat, NumbersAgreeWithPrintf) {
  std::mt19937 random(42);
  for (int i = 0; i < 20'000; ++i) {
    const auto below = [&random](unsigned limit) { return static_cast<std::uint16_t>(random() % limit); };
    const CivilTime t = {static_cast<std::uint16_t>(1601 + below(9000)),
                         static_cast<std::uint16_t>(1 + below(12)),
                         below(7),
                         static_cast<std::uint16_t>(1 + below(31)),
                         below(24),
                         below(60),
                         below(60),
                         0};
    char expected[128];
    std::snprintf(expected, sizeof expected, "%d %02d-%3d|%4d:%02d.%d %05d/%02d", t.year, t.month, t.day,
                  t.hour, t.minute, t.second, t.year, t.hour % 12);
    ASSERT_EQ(Formatted("Y MM-  D|   h:mm.s YYYYY/kk", t), expected);
  }
}

}  // namespace
}  // namespace wfinfo
