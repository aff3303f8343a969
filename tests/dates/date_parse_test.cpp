#include "src/dates/date_parse.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <string_view>

#include "src/dates/date_format.h"

namespace wfinfo {
namespace {

// "2024-03-05 09:07:03 +0900", without a zone only the first part; "none" for no date.
std::string Shown(const std::optional<HeaderDate>& date) {
  if (!date) return "none";
  const std::optional<CivilTime> time = CivilFromTicks(date->wall_clock);
  if (!time) return "beyond file times";
  char text[64];
  constexpr std::string_view kFormat = "YYYY-MM-DD hh:mm:ss";
  std::string shown(text, FormatDateText(kFormat, *time, text, sizeof text));
  if (!date->has_zone) return shown;
  char form[kDefaultFormRoom];
  const std::string whole(form, DefaultDateForm(*time, -date->zone_minutes, form));
  return shown + whole.substr(whole.rfind(' '));
}

struct ReadCase {
  std::string_view text;
  std::string_view expected;
};

constexpr std::string_view kTokyo = "2024-03-05 09:07:03 +0900";
constexpr std::string_view kBare = "2024-03-05 09:07:03";
constexpr std::string_view kNoSeconds = "2024-03-05 09:07:00";
constexpr std::string_view kDay = "2024-03-05 00:00:00";

// Read where the text ends with its block of memory: the sanitizer sees a byte read behind it.
std::string ShownOfExactBlock(std::string_view text) {
  const std::unique_ptr<char[]> block(new char[text.size()]);
  std::copy(text.begin(), text.end(), block.get());
  return Shown(ReadHeaderDate({block.get(), text.size()}));
}

void Expect(const ReadCase& c) {
  const std::string exact(c.text);
  EXPECT_EQ(ShownOfExactBlock(c.text), c.expected) << c.text;
  EXPECT_EQ(Shown(ReadHeaderDate(exact)), c.expected) << c.text;
  EXPECT_EQ(Shown(ReadAnyHeaderDate(exact)), c.expected) << c.text;
  EXPECT_EQ(Shown(ReadHeaderDate(" " + exact + "\r\n")), c.expected) << c.text;
  EXPECT_EQ(Shown(ReadHeaderDate("(c) " + exact)), c.expected) << c.text;
}

TEST(DateParse, MailHeaderFormsAreRead) {
  const ReadCase cases[] = {
      {"Tue, 5 Mar 2024 09:07:03 +0900", kTokyo},
      {"Tue, 05 Mar 2024 09:07:03 +0900", kTokyo},
      {"5 Mar 2024 09:07:03 +0900", kTokyo},
      {"Tue, 5 Mar 2024 09:07:03 +0900 (JST)", kTokyo},
      {"Tue, 5 Mar 2024 09:07:03 +0900(JST)", kTokyo},
      {"tue, 5 mar 2024 09:07:03 +0900", kTokyo},
      {"TUE, 5 MAR 2024 09:07:03 +0900", kTokyo},
      {"Tue,5 Mar 2024 09:07:03 +0900", kTokyo},
      {"Tue 5 Mar 2024 09:07:03 +0900", kTokyo},
      {"Tue,  5  Mar\t2024\r\n 09:07:03   +0900", kTokyo},
      {"Fri, 5 Mar 2024 09:07:03 +0900", kTokyo},  // a wrong weekday does not count
      {"Tue, 5 Mar 2024 09:07 +0900", "2024-03-05 09:07:00 +0900"},
      {"Tue, 5 Mar 2024 9:7:3 +0900", kTokyo},
      {"Tue, 5 Mar 2024  9: 7: 3 +0900", kTokyo},
      {"Tue, 5 Mar 2024 09:07:03", kBare},
      {"Tue, 5 Mar 2024 09:07", kNoSeconds},
      {"5 Mar 2024", kDay},
      {"Tue, 5 Mar 24 09:07:03", kBare},
      {"Tue, 5 Mar 124 09:07:03", kBare},  // years counted from 1900
      {"5 Mar 49 09:07:03", "2049-03-05 09:07:03"},
      {"5 Mar 50 09:07:03", "1950-03-05 09:07:03"},
      {"5 Mar 00 09:07:03", "2000-03-05 09:07:03"},
      {"5 Mar 99 09:07:03", "1999-03-05 09:07:03"},
      {"5 Mar 100 09:07:03", "2000-03-05 09:07:03"},
      {"29 Feb 2024 00:00:00 +0000", "2024-02-29 00:00:00 +0000"},
      {"1 Jan 1601 00:00:00 +0000", "1601-01-01 00:00:00 +0000"},
      {"31 Dec 9999 23:59:59 +0000", "9999-12-31 23:59:59 +0000"},
      {"Sat, 30 Jun 2012 23:59:60 +0000", "2012-06-30 23:59:59 +0000"},  // a leap second
      {"Sun, 1 Jul 2012 08:59:60 +0900", "2012-07-01 08:59:59 +0900"},
      {"5 Mar 2024 24:00:00", "2024-03-06 00:00:00"},
  };
  for (const ReadCase& c : cases) Expect(c);
}

TEST(DateParse, EveryMonthAndWeekdayIsKnownWholeAndCut) {
  constexpr std::string_view kMonths[] = {"January",   "February", "March",    "April",
                                          "May",       "June",     "July",     "August",
                                          "September", "October",  "November", "December"};
  constexpr std::string_view kWeekdays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                            "Thursday", "Friday", "Saturday"};
  for (int month = 1; month <= 12; ++month) {
    const std::string_view name = kMonths[month - 1];
    for (std::size_t length = 3; length <= name.size(); ++length) {
      const std::string text = "7 " + std::string(name.substr(0, length)) + " 2024 00:00:00 +0000";
      const std::optional<HeaderDate> date = ReadHeaderDate(text);
      ASSERT_TRUE(date) << text;
      EXPECT_EQ(date->wall_clock, DayNumber(2024, month, 7) * kTicksPerDay) << text;
      EXPECT_EQ(ReadAnyHeaderDate(text), date);
    }
    EXPECT_FALSE(ReadHeaderDate("7 " + std::string(name) + "x 2024")) << name;
    EXPECT_FALSE(ReadHeaderDate("7 " + std::string(name.substr(0, 2)) + " 2024")) << name;
  }
  for (const std::string_view name : kWeekdays) {
    for (std::size_t length = 3; length <= name.size(); ++length) {
      const std::string text = std::string(name.substr(0, length)) + ", 5 Mar 2024 09:07:03 +0900";
      EXPECT_EQ(Shown(ReadHeaderDate(text)), kTokyo) << text;
    }
    EXPECT_FALSE(ReadHeaderDate(std::string(name) + "s, 5 Mar 2024 09:07:03 +0900")) << name;
  }
}

struct ZoneCase {
  std::string_view zone;
  std::string_view shown;  // "" when no zone is understood
};

TEST(DateParse, ZonesInEveryShape) {
  const ZoneCase cases[] = {
      {"+0900", " +0900"},
      {"-0800", " -0800"},
      {"+0000", " +0000"},
      {"-0000", " +0000"},
      {"+0545", " +0545"},
      {"-0330", " -0330"},
      {"+900", " +0900"},
      {"+9:00", " +0900"},
      {"+09:00", " +0900"},
      {"-8:30", " -0830"},
      {"+09", " +0900"},
      {"+9", " +0900"},
      {"-8", " -0800"},
      {"+090000", " +0900"},
      {"+ 0900", " +0900"},
      {"--0800", " -0800"},
      {"+-0800", " -0800"},
      {"0900", " +0900"},
      {"GMT+0900", " +0900"},
      {"GMT+9", " +0900"},
      {"UTC+09:00", " +0900"},
      {"GMT +0900", " +0900"},
      {"GMT-8", " -0800"},
      {"JST +0900", " +0900"},
      {"+0900 JST", " +0900"},
      {"-0500 EST", " -0500"},
      {"EST -0500", " -0500"},
      {"+0900 +0900", " +0900"},
      {"+0900 -0800", " +0900"},
      {"\"GMT\"", ""},
      {"UT", " +0000"},
      {"UTC", " +0000"},
      {"GMT", " +0000"},
      {"gmt", " +0000"},
      {"Z", " +0000"},
      {"z", " +0000"},
      {"EST", " -0500"},
      {"EDT", " -0400"},
      {"CST", " -0600"},
      {"CDT", " -0500"},
      {"MST", " -0700"},
      {"MDT", " -0600"},
      {"PST", " -0800"},
      {"PDT", " -0700"},
      {"JST", " +0900"},
      {"CET", " +0100"},
      {"CEST", " +0200"},
      {"MET", " +0100"},
      {"MEST", " +0200"},
      {"BST", " +0100"},
      {"WET", " +0000"},
      {"WEST", " +0100"},
      {"EET", " +0200"},
      {"EEST", " +0300"},
      {"MSK", " +0300"},
      {"KST", " +0900"},
      {"HKT", " +0800"},
      {"SGT", " +0800"},
      {"AST", " -0400"},
      {"ADT", " -0300"},
      {"HST", " -1000"},
      {"AKST", " -0900"},
      {"AKDT", " -0800"},
      {"NST", " -0330"},
      {"NDT", " -0230"},
      {"AWST", " +0800"},
      {"ACST", " +0930"},
      {"AEST", " +1000"},
      {"AEDT", " +1100"},
      {"NZST", " +1200"},
      {"NZDT", " +1300"},
      {"A", " +0000"},
      {"m", " +0000"},
      {"Y", " +0000"},
      {"J", ""},
      {"", ""},
      {"IST", ""},
      {"Tokyo Standard Time", ""},
      {"(JST)", ""},
      {"+2400", ""},
      {"+0960", ""},
      {"+12345", ""},
      {"+9:60", ""},
      {"-99999999999999999999", ""},
      {"+", ""},
      {"-", ""},
      {"?", ""},
      {"EST5EDT", " -0500"},
      {"+2359", " +2359"},
      {"-2359", " -2359"},
      {"-0500 (EST (New York))", " -0500"},
      {"\x93\x8C\x8B\x9E", ""},
      {"; foo", ""},
      {"+0900; foo", " +0900"},
  };
  for (const ZoneCase& c : cases) {
    const std::string expected = std::string(kBare) + std::string(c.shown);
    Expect({"Tue, 5 Mar 2024 09:07:03 " + std::string(c.zone), expected});
    Expect({"2024-03-05T09:07:03 " + std::string(c.zone), expected});
  }
}

TEST(DateParse, FormsOfOtherProgramsAreRead) {
  const ReadCase cases[] = {
      {"Tue Mar  5 09:07:03 2024", kBare},  // asctime
      {"Tue Mar  5 09:07:03 2024\n", kBare},
      {"Tue Mar 5 09:07:03 JST 2024", kTokyo},
      {"Tue Mar 5 09:07:03 +0900 2024", kTokyo},
      {"Tue Mar 5 09:07:03 2024 +0900", kTokyo},
      {"Tue Mar 5 09:07:03 GMT+09:00 2024", kTokyo},
      {"Mar 5 09:07:03 24", kBare},
      {"2024-03-05T09:07:03+09:00", kTokyo},  // ISO 8601
      {"2024-03-05T09:07:03.123+09:00", kTokyo},
      {"2024-03-05T09:07:03,123456789+0900", kTokyo},
      {"2024-03-05T00:07:03Z", "2024-03-05 00:07:03 +0000"},
      {"2024-03-05t00:07:03z", "2024-03-05 00:07:03 +0000"},
      {"2024-03-05T09:07", kNoSeconds},
      {"2024-03-05 09:07:03", kBare},
      {"2024-03-05 09:07:03 +0900", kTokyo},
      {"2024-03-05 09:07:03.5 JST", kTokyo},
      {"2024-03-05-09:07:03", kBare},
      {"2024-03-05", kDay},
      {"2024-3-5 9:07:03", kBare},
      {"20240305T090703+0900", kTokyo},
      {"20240305T0907", kNoSeconds},
      {"20240305 09:07:03", kBare},
      {"20240305", kDay},
      {"20240305090703", kBare},
      {"2024/03/05 09:07:03", kBare},
      {"2024/3/5", kDay},
      {"2024.03.05 09:07:03", kBare},
      {"2024.03.05 09.07.03", kBare},
      {"05.03.2024 09:07:03", kBare},
      {"5.3.2024, 9.07", kNoSeconds},
      {"2024-Mar-05 09:07:03", kBare},
      {"2024 Mar 5 09:07:03", kBare},
      {"09:07:03 5 Mar 2024", kBare},
      {"09:07:03 2024-03-05", kBare},
      {"Tuesday, March 5, 2024 9:07 AM", kNoSeconds},
      {"Tuesday, March 5, 2024 9:07:03 PM", "2024-03-05 21:07:03"},
      {"March 5 2024 12:07am", "2024-03-05 00:07:00"},
      {"March 5 2024 12:07pm", "2024-03-05 12:07:00"},
      {"March 5 2024 9:07 p.m.", "2024-03-05 21:07:00"},
      {"March 5 2024 9:07 a.m. JST", "2024-03-05 09:07:00 +0900"},
      {"March 5 2024 21:07 PM", "2024-03-05 21:07:00"},
      {"March 5th, 2024 09:07:03", kBare},
      {"Mar. 5, 2024 09:07:03", kBare},
      {"1st March 2024", "2024-03-01 00:00:00"},
      {"2nd March 2024", "2024-03-02 00:00:00"},
      {"3rd March 2024", "2024-03-03 00:00:00"},
  };
  for (const ReadCase& c : cases) Expect(c);
}

TEST(DateParse, BrokenMailersAreUnderstood) {
  const ReadCase cases[] = {
      {"Sat, 5 Mar 24 9:07", kNoSeconds},
      {"Tue, 5-Mar-2024 09:07:03 +0900", kTokyo},
      {"Tue, 05-Mar-24 09:07:03 JST", kTokyo},
      {"5-Mar-24 9:07", kNoSeconds},
      {"2024 5-Mar 9:07", kNoSeconds},
      {"5 Mar 2024 9:07 p.x", "2024-03-05 09:07:00 +0000"},  // a zone of one letter, no p.m.
      {"5 Mar 2024 9:07 p.my", "2024-03-05 09:07:00 +0000"},
      {"09:07:03 +0900 5 Mar 2024", kTokyo},
      {"5-March-2024-09:07:03", kBare},
      {"5/Mar/2024:09:07:03 +0900", kTokyo},
      {"5.Mar.2024 09:07:03", kBare},
      {"5. Mar. 2024 09:07:03", kBare},
      {"5-Mar 2024 09:07:03", kBare},
      {"Tue, 5 March 2024 09.07.03 +0900", kTokyo},
      {"Tue., 5 Mar., 2024, 09:07:03, +0900", kTokyo},
      {"Tue, 5Mar2024 09:07:03", kBare},
      {"Tue, Tue, 5 Mar 2024 09:07:03", kBare},
      {"25/03/2024 09:07:03", "2024-03-25 09:07:03"},  // only one order is possible
      {"03/25/2024 09:07:03", "2024-03-25 09:07:03"},
      {"03/03/2024", "2024-03-03 00:00:00"},
      {"25-03-2024", "2024-03-25 00:00:00"},
  };
  for (const ReadCase& c : cases) Expect(c);
}

TEST(DateParse, CommentsStandAnywhere) {
  const ReadCase cases[] = {
      {"Tue(a), (b)5(c)Mar(d)2024(e)09:07:03(f)+0900(g)", kTokyo},
      {"(a (nested (deeply) one) b) 5 Mar 2024 09:07:03 +0900", kTokyo},
      {"(a \\) b) 5 Mar 2024 09:07:03 +0900", kTokyo},
      {"(a \\( b) 5 Mar 2024 09:07:03 +0900", kTokyo},
      {"(a \\\\) 5 Mar 2024 09:07:03 +0900", kTokyo},
      // The second byte of these characters is a backslash; it escapes nothing.
      {"(\x95\x5C) 5 Mar 2024 09:07:03 +0900", kTokyo},
      {"5 Mar 2024 09:07:03 (\x93\x8C\x8B\x9E (\x95\x5C)) +0900", kTokyo},
      {"5 Mar 2024 09:07:03 (\x1A\xCD\x80\x8D) +0900", kTokyo},
      {"5 Mar 2024 09:07:03 +0900 (never closed", kTokyo},
      {"5 Mar 2024 09:07:03 (never closed +0900", kBare},
      {"5 Mar 2024 09:07:03 (\\", kBare},
      {"5 Mar 2024 09:07:03 (\x95", kBare},
  };
  for (const ReadCase& c : cases) Expect(c);
}

TEST(DateParse, WhatCannotBeADateIsRefused) {
  const std::string_view texts[] = {
      "",
      " ",
      "()",
      "(5 Mar 2024)",
      ",",
      "hello",
      "5",
      "Mar",
      "2024",
      "5 Mar",
      "Mar 2024",
      "09:07:03",
      "Tue",
      "Tue, 09:07:03 +0900",
      "31 Feb 2024 09:07:03 +0900",
      "30 Feb 2024",
      "29 Feb 2023",
      "29 Feb 1900",
      "31 Apr 2024",
      "0 Mar 2024",
      "00 Mar 2024",
      "32 Mar 2024",
      "5 Mar 2024 25:00:00",
      "5 Mar 2024 24:00:01",
      "5 Mar 2024 24:01",
      "5 Mar 2024 09:60:00",
      "5 Mar 2024 09:07:61",
      "5 Mar 2024 09:07:",
      "5 Mar 2024 09:",
      "5 Mar 2024 9:007",
      "5 Mar 2024 009:07",
      "5 Mar 1600",
      "5 Mar 0000",
      "5 Mar 12024",
      "5 Mar 4",
      "5 Foo 2024 09:07:03",
      "2024-13-05",
      "2024-00-05",
      "2024-03-32",
      "2024-03-00",
      "2024-03-00 09:07:03 5",    // nor does a later number take the place
      "2024-00-05 09:07:03 Mar",  // nor a later month
      "JST Tue, 5 Mar 2024 09:07:03",
      "Tue Mar !5 09:07:03 2024",
      "2024-02-30",
      "2024-03",
      "2024-3-5-6",
      "24-03-05",
      "20240230",
      "20241301",
      "20240305T25",
      "20240305T250000",
      "20240305240001",
      "2024030509",
      "123456789012345678901234567890",
      "03/05/2024",
      "3-5-2024",
      "03/05/24",
      "05.03.24",
      "31.02.2024",
      "5-Foo-2024",
      "5-Mar-20245",
      "5-Tue-2024",
      "5-Mar-1",
      "2024-Mar",
      "5 5-Mar-2024",
      "Mar 5-Mar-2024",
      "5 Mar Apr 2024",
      "5 Mar 2024 2025",
      "5 Mar 0000 2024",
      "5 Marsh 2024 09:07:03",
      "5 Octopus 2024",
      "123, 5 Mar 2024 09:07:03",
      "005-Mar-2024",
      "Mar 2024 5t",
      "Tuesdaz, 5 Mar 2024 09:07:03",
      "5 Mar 2024 garbage",
      "garbage 5 Mar 2024 09:07:03",
      "5 Mar 2024 +0900",
      "5 Mar 2024 0907",
      "5 Mar 09:07:03",
      "\x93\xFA 5 Mar 2024",
      "5 Mar 2024 \x93\xFA",
      "5 Mar 2024\x80",
      "9:07 10:08 5 Mar 2024",
      "Z 5 Mar 2024",
      "5 Mar 2024 Z",
      "09:07:03 +0900 +0900 5 Mar 2024",
      "Mar 5-6-2024",
      "20245-03-05",
      "5-Mar-x",
      "5-Mar- 2024 09:07:03",
      "2024 5-Mar-24",
      "0-Mar-2024",
      "5-123-2024",
      "2024 5-6-2023",
      "Mar 20240305",
      "2024 20240305",
      "09:07 20240305090703",
      "Mar, 05 Mar 2024 09:07:03",
      "05 Sun 2024 09:07:03",
      "-5 Mar 2024",
      "+5 Mar 2024",
      "2024-03-05T",
      "\"5 Mar 2024 09:07:03\"",
  };
  for (const std::string_view text : texts) Expect({text, "none"});
  EXPECT_FALSE(ReadHeaderDate(std::string_view("5 Mar 2024\0", 11))) << "a zero byte is no blank";
}

// Mutations of the usual forms: the quick ways and the thorough one read the same, or both nothing.
TEST(DateParse, TheQuickWaysNeverDifferOnDamagedDates) {
  constexpr std::string_view kSeeds[] = {"Tue, 5 Mar 2024 09:07:03 +0900",
                                         "31 Dec 1999 23:59:60 -0000 (UTC)",
                                         "Sun, 29 Feb 2004 00:00:00 -1130",
                                         "Fri, 01 Jan 2021 24:00:00 GMT+0900",
                                         "7 Jun 2030 12:34:56",
                                         "Wed,  9 Jul 03 08:01:59 EST",
                                         "Wednesday, 06-Nov-94 08:49:37 GMT",
                                         "monday, 6-nov-1994 08:49:37 JST",
                                         "Sat Mar  5 09:07:03 2024",
                                         "Thu Sep 30 19:27:43 1999 +0100"};
  constexpr std::string_view kBytes = "0123456789 :+-,()aeMrTZ./\t\r\n\x83\xB0\xBA\x1A@[`{";
  std::mt19937 random(44);
  int read = 0;
  for (int i = 0; i < 400'000; ++i) {
    std::string text(kSeeds[random() % std::size(kSeeds)]);
    for (auto n = random() % 3; n > 0; --n) text[random() % text.size()] = kBytes[random() % kBytes.size()];
    if (random() % 4 == 0) text.resize(random() % (text.size() + 1));
    text.shrink_to_fit();
    const std::optional<HeaderDate> date = ReadHeaderDate(text);
    ASSERT_EQ(ReadAnyHeaderDate(text), date) << text;
    if (date) ++read;
  }
  EXPECT_GT(read, 100'000);
}

TEST(DateParse, PrintedDatesReadBack) {
  std::mt19937_64 random(45);
  constexpr FileTicks kEnd = DayNumber(10'000, 1, 1) * kTicksPerDay;
  constexpr std::string_view kFormats[] = {
      "YYYY-MM-DDThh:mm:ss", "EW, D EM YYYY hh:mm:ss", "EW EM  D hh:mm:ss YYYY", "EFW, EFM  D, YYYY  h:m:s",
      "YYYYMMDDhhmmss",      "DD.MM.YYYY hh.mm.ss",    "D-EM-YYYY hh:mm:ss"};
  for (int i = 0; i < 100'000; ++i) {
    const FileTicks ticks = static_cast<FileTicks>(random() % kEnd) / kTicksPerSecond * kTicksPerSecond;
    const CivilTime time = *CivilFromTicks(ticks);
    const auto bias = static_cast<int>(random() % 2879) - 1439;
    char form[kDefaultFormRoom];
    const std::string_view text(form, DefaultDateForm(time, bias, form));
    ASSERT_EQ(ReadHeaderDate(text), (HeaderDate{ticks, true, -bias})) << text;
    ASSERT_EQ(ReadAnyHeaderDate(text), (HeaderDate{ticks, true, -bias})) << text;
    char free[64];
    const std::string_view format = kFormats[random() % std::size(kFormats)];
    const std::string_view printed(free, FormatDateText(format, time, free, sizeof free));
    ASSERT_EQ(ReadHeaderDate(printed), (HeaderDate{ticks, false, 0})) << printed;
  }
}

struct ClockCase {
  std::string_view text;
  std::int64_t bias;
  std::string_view expected;
  const char* why;
};

TEST(DateParse, TheMachinesClockShowsTheMomentOfTheText) {
  const ClockCase cases[] = {
      {"Tue, 5 Mar 2024 09:07:03 +0900", -540, kBare, "text and machine share a zone"},
      {"Tue, 5 Mar 2024 09:07:03 -0800", 480, kBare, "also in the west"},
      {"Tue, 5 Mar 2024 09:07:03 -0800", -540, "2024-03-06 02:07:03", "from west to east"},
      {"Tue, 5 Mar 2024 09:07:03 -0800", 0, "2024-03-05 17:07:03", "to UTC"},
      {"Tue, 5 Mar 2024 09:07:03 +0900", 480, "2024-03-04 16:07:03", "from east to west"},
      {"Tue, 5 Mar 2024 09:07:03 +0900", -330, "2024-03-05 05:37:03", "half an hour"},
      {"Tue, 5 Mar 2024 09:07:03 +0545", 210, "2024-03-04 23:52:03", "a quarter, half an hour in the west"},
      {"Thu, 29 Feb 2024 23:30:00 +0000", -60, "2024-03-01 00:30:00", "over a leap day"},
      {"Sun, 31 Dec 2023 23:30:00 +0000", -60, "2024-01-01 00:30:00", "into the next year"},
      {"Mon, 1 Jan 2024 00:30:00 +0000", 60, "2023-12-31 23:30:00", "into the last year"},
      {"5 Mar 2024 09:07:03", -540, kBare, "no zone: on the machine's clock already"},
      {"5 Mar 2024 09:07:03", 480, kBare, "no zone, in the west"},
      {"5 Mar 2024 09:07:03 IST", -540, kBare, "a zone that is not understood is none"},
      {"5 Mar 2024 09:07:03 -0000", -540, "2024-03-05 18:07:03", "UTC"},
      {"5 Mar 2024 09:07:03 PDT", -540, "2024-03-06 01:07:03", "a name counts as it is written"},
      {"1 Jan 1601 00:00:00 +0000", 0, "1601-01-01 00:00:00", "the first time there is"},
      {"1 Jan 1601 00:00:00 +0900", 0, "none", "nine hours earlier on the machine's clock"},
      {"31 Dec 9999 23:59:59 -2359", -1439, "10000-01-02 23:57:59", "beyond the last year of mails"},
  };
  for (const ClockCase& c : cases) {
    const std::optional<HeaderDate> date = ReadHeaderDate(c.text);
    ASSERT_TRUE(date) << c.text;
    const FileTicks ticks = OnMachineClock(*date, c.bias);
    const std::string shown = ticks < 0 ? "none" : Shown(HeaderDate{ticks, false, 0});
    EXPECT_EQ(shown, c.expected) << c.text << ": " << c.why;
  }
  // The farthest distances that MachineBias can answer are still counted.
  constexpr std::int64_t kFarthest = std::int64_t{1} << 32;
  constexpr HeaderDate kDate{DayNumber(2024, 3, 5) * kTicksPerDay, true, 0};
  EXPECT_EQ(OnMachineClock(kDate, kFarthest), kDate.wall_clock - kFarthest * kTicksPerMinute);
  EXPECT_EQ(OnMachineClock(kDate, -kFarthest), kDate.wall_clock + kFarthest * kTicksPerMinute);
}

}  // namespace
}  // namespace wfinfo
