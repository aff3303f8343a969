#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "src/dates/civil_time.h"
#include "src/dates/date_format.h"
extern "C" {
#include "wfinfo.h"
}

namespace {

constexpr SYSTEMTIME kTime = {2024, 3, 2, 5, 9, 7, 3, 0};
constexpr char kDate[] = "Tue, 5 Mar 2024 09:07:03";  // on the machine's clock
constexpr char kMonday[] = "\x8C\x8E";
constexpr char kSaturday[] = "\x93\x79";

std::vector<std::string>& Reports() {
  static std::vector<std::string> reports;
  return reports;
}

void KeepReport(const char* text) { Reports().push_back(text); }

struct HostInfo {
  std::uint32_t size;
  std::uint32_t english;
  void (*callback)(const char*);
};

void UseLanguage(bool english) {
  const HostInfo info = {sizeof(HostInfo), english ? 1U : 0U, KeepReport};
  NotifyWrenfoldInfo(&info);
}

class Dates : public testing::Test {
 protected:
  void SetUp() override {
    Reports().clear();
    UseLanguage(true);
  }

  static std::string OneReport() {
    if (Reports().size() != 1) return "not one report but " + std::to_string(Reports().size());
    const std::string report = Reports().front();
    Reports().clear();
    return report;
  }
};

long long AsValue(const char* text) { return reinterpret_cast<long long>(text); }
void* AsRecord(const SYSTEMTIME& time) { return const_cast<SYSTEMTIME*>(&time); }

// This machine's minutes west of UTC, by the system's own answer.
std::int64_t MachineBias() {
  TIME_ZONE_INFORMATION zone = {};
  const DWORD answer = GetTimeZoneInformation(&zone);
  return wfinfo::MachineBias({static_cast<std::uint32_t>(answer), static_cast<std::int32_t>(zone.Bias),
                              static_cast<std::int32_t>(zone.StandardBias),
                              static_cast<std::int32_t>(zone.DaylightBias)});
}

std::string ZoneText(std::int64_t bias) {
  const auto minutes = static_cast<int>(bias < 0 ? -bias : bias);
  char text[16];
  std::snprintf(text, sizeof text, "%c%02d%02d", bias <= 0 ? '+' : '-', minutes / 60, minutes % 60);
  return text;
}

// The zone of the default form.
std::string MachineZone() { return ZoneText(MachineBias()); }

// `time` and some minutes, as "2024-03-05 09:07:03", reckoned by the system.
std::string Shown(const SYSTEMTIME& time, std::int64_t minutes) {
  FILETIME file;
  SystemTimeToFileTime(&time, &file);
  ULARGE_INTEGER ticks;
  ticks.LowPart = file.dwLowDateTime;
  ticks.HighPart = file.dwHighDateTime;
  ticks.QuadPart += static_cast<ULONGLONG>(minutes * wfinfo::kTicksPerMinute);
  file = {ticks.LowPart, ticks.HighPart};
  SYSTEMTIME later;
  FileTimeToSystemTime(&file, &later);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", later.wYear, later.wMonth, later.wDay,
                later.wHour, later.wMinute, later.wSecond);
  return text;
}

constexpr char kMissing[] =
    "WFINFO.DLL: String parameter missing or numeric parameter specified that should be string.";

TEST_F(Dates, ARecordIsPrintedByAFormat) {
  EXPECT_STREQ(FormatDateSub("YYYY/MM/DD hh:mm:ss", AsRecord(kTime)), "2024/03/05 09:07:03");
  EXPECT_STREQ(FormatDateSub("", AsRecord(kTime)), "");
  EXPECT_STREQ(FormatDateSub("Y", nullptr), "");
  EXPECT_STREQ(FormatDateSub("Y", reinterpret_cast<void*>(7)), "");
  EXPECT_TRUE(Reports().empty());
  EXPECT_STREQ(FormatDateSub(nullptr, AsRecord(kTime)), "");
  EXPECT_EQ(OneReport(), kMissing);
}

TEST_F(Dates, AFormatMayLieInAResult) {
  const char* const first = FormatDateSub("\x97\xDF\x98\x61YY/M/D", AsRecord(kTime));
  EXPECT_STREQ(first,
               "\x97\xDF\x98\x61"
               "06/3/5");
  EXPECT_STREQ(FormatDateSub(first, AsRecord(kTime)),
               "\x97\xDF\x98\x61"
               "06/3/5");
}

TEST_F(Dates, LongTextsArriveWhole) {
  // 4096 bytes of format that become 16384 bytes.
  const std::string names(4096, 'J');
  std::string expected;
  for (int i = 0; i < 4096; ++i) expected += "\x8C\xDF\x91\x4F";
  EXPECT_EQ(FormatDateSub(names.c_str(), AsRecord(kTime)), expected);
  EXPECT_EQ(FormatDate(kDate, names.c_str()), expected);
  // At the border of the short result, 8191 bytes, and beyond.
  for (const std::size_t length : {8190U, 8191U, 8192U, 8193U}) {
    const std::string text(length, 'x');
    EXPECT_EQ(FormatDateSub(text.c_str(), AsRecord(kTime)), text);
  }
  // A long result may be the next format.
  const char* const kept = FormatDateSub(std::string(9000, 'W').c_str(), AsRecord(kTime));
  EXPECT_EQ(std::string(kept).size(), 18'000U);
  const std::string copy = kept;
  EXPECT_EQ(FormatDateSub(kept, AsRecord(kTime)), copy);
}

TEST_F(Dates, TheCurrentDateIsThatOfTheClock) {
  SYSTEMTIME before, after;
  std::string printed;
  do {  // until the second did not change meanwhile
    GetLocalTime(&before);
    printed = CurrentDate("YYYY-MM-DD hh:mm:ss");
    GetLocalTime(&after);
  } while (before.wSecond != after.wSecond);
  EXPECT_EQ(printed, FormatDateSub("YYYY-MM-DD hh:mm:ss", AsRecord(before)));
  do {
    GetLocalTime(&before);
    printed = CurrentDate(nullptr);
    EXPECT_EQ(std::string(CurrentDate("")).size(), printed.size());
    GetLocalTime(&after);
  } while (before.wSecond != after.wSecond);
  EXPECT_EQ(printed, FormatDateSub("EW, DD EM YYYY hh:mm:ss ", AsRecord(before)) + MachineZone());
  EXPECT_TRUE(Reports().empty());
}

TEST_F(Dates, TheCurrentDateChecksItsFormat) {
  EXPECT_EQ(CurrentDate(std::string(4096, '-').c_str()), std::string(4096, '-'));
  EXPECT_STREQ(CurrentDate(std::string(4097, '-').c_str()), "");
  EXPECT_EQ(std::string(CurrentDate(std::string(4096, 'J').c_str())).size(), 16'384U);
  EXPECT_TRUE(Reports().empty());
  EXPECT_STREQ(CurrentDate(reinterpret_cast<const char*>(5)), "");
  EXPECT_EQ(OneReport(), kMissing);
}

TEST_F(Dates, AMailDateShowsTheMachinesClock) {
  const std::string here = std::string("Tue, 5 Mar 2024 09:07:03 ") + MachineZone();
  EXPECT_STREQ(FormatDate(here.c_str(), "YYYY/MM/DD hh:mm:ss"), "2024/03/05 09:07:03");
  EXPECT_STREQ(FormatDate("Tue, 5 Mar 2024 09:07:03", "YYYY/MM/DD hh:mm:ss"), "2024/03/05 09:07:03");
  EXPECT_STREQ(FormatDate("5 Mar 24 9:07", "EW  D/M h"), "Tue  5/3 9");
  for (const int east : {0, 540, -480, 330, -210, 1439, -1439}) {
    const std::string text = "Tue, 5 Mar 2024 09:07:03 " + ZoneText(-east);
    EXPECT_EQ(FormatDate(text.c_str(), "YYYY-MM-DD hh:mm:ss"), Shown(kTime, -east - MachineBias())) << text;
  }
  EXPECT_STREQ(FormatDate(kDate, ""), "");
  EXPECT_STREQ(FormatDate("hello", "Y"), "");
  EXPECT_STREQ(FormatDateDefault1601(here.c_str(), "YYYY"), "2024");
  EXPECT_STREQ(FormatDateDefault1601("hello", "YYYY/M/D h:m:s EW"), "1601/1/1 0:0:0 Mon");
  EXPECT_STREQ(FormatDateDefault1601("", "oYYYY/M/D h"), "1601/1/1 0");
  EXPECT_TRUE(Reports().empty());
}

TEST_F(Dates, ALeadingOShowsTheClockAsItIsWritten) {
  for (const int east : {0, 540, -480, 330, -210, 1439, -1439}) {
    const std::string text = "Tue, 5 Mar 2024 09:07:03 " + ZoneText(-east);
    EXPECT_STREQ(FormatDate(text.c_str(), "oYYYY/MM/DD hh:mm:ss"), "2024/03/05 09:07:03") << text;
    EXPECT_STREQ(FormatDateDefault1601(text.c_str(), "ohh:mm"), "09:07") << text;
  }
  EXPECT_STREQ(FormatDate("5 Mar 2024 09:07:03", "oYYYY/MM/DD hh:mm:ss"), "2024/03/05 09:07:03");
  EXPECT_STREQ(FormatDate(kDate, "o"), "");
  EXPECT_STREQ(FormatDate(kDate, " o"), " o") << "only in front";
}

// An hour before the first time on this machine's clock, and half an hour behind the year 9999.
TEST_F(Dates, TheMachinesClockMayLeaveTheYearsOfMails) {
  const std::string first = "1 Jan 1601 00:00:00 " + ZoneText(MachineBias() - 60);  // an hour further east
  EXPECT_STREQ(FormatDate(first.c_str(), "Y"), "");
  EXPECT_STREQ(FormatDate(first.c_str(), "oY"), "1601");
  EXPECT_STREQ(FormatDateDefault1601(first.c_str(), "YYYY-MM-DD hh:mm"), "1601-01-01 00:00");
  EXPECT_TRUE(Reports().empty());
  EXPECT_STREQ(ShiftDate(first.c_str(), 0), "");
  EXPECT_EQ(OneReport(), "WFINFO.DLL: ShiftDate failed. Maybe date/time overflow or underflow.");
  EXPECT_EQ(ShiftDate(first.c_str(), AsValue("0.1")), "Mon, 01 Jan 1601 00:00:00 " + MachineZone());
  EXPECT_EQ(SubtractDate("1 Jan 1601 00:00", first.c_str(), "hour"), 1);
  EXPECT_EQ(SubtractDate("1 Jan 1601 00:00", first.c_str(), nullptr), 1);
  const std::string last = "31 Dec 9999 23:30:00 " + ZoneText(MachineBias() + 60);
  EXPECT_STREQ(FormatDate(last.c_str(), "YYYY-MM-DD hh:mm"), "10000-01-01 00:30");
  EXPECT_EQ(ShiftDate(last.c_str(), 0), "Sat, 01 Jan 10000 00:30:00 " + MachineZone());
  EXPECT_EQ(SubtractDate(last.c_str(), "31 Dec 9999 23:30:00", "minute"), 60);
  EXPECT_EQ(SubtractDate(last.c_str(), "31 Dec 9999 23:30:00", nullptr), 1);
}

TEST_F(Dates, MailDatesCheckBothTexts) {
  EXPECT_STREQ(FormatDate(nullptr, "Y"), "");
  EXPECT_EQ(OneReport(), kMissing);
  EXPECT_STREQ(FormatDate(kDate, nullptr), "");
  EXPECT_EQ(OneReport(), kMissing);
  EXPECT_STREQ(FormatDateDefault1601(nullptr, "Y"), "");
  EXPECT_EQ(OneReport(), kMissing);
  EXPECT_STREQ(FormatDateDefault1601(kDate, reinterpret_cast<const char*>(1)), "");
  EXPECT_EQ(OneReport(), kMissing);
}

TEST_F(Dates, ErasPrintTheirNames) {
  EXPECT_STREQ(FormatDate("1 May 2019", "\x97\xDF\x98\x61gY"), "\x97\xDF\x98\x61\x8C\xB3");
  EXPECT_STREQ(FormatDate("1 May 2019", "\x97\xDF\x98\x61Y"),
               "\x97\xDF\x98\x61"
               "1");
  EXPECT_STREQ(FormatDate("30 Apr 2019", "\x97\xDF\x98\x61Y"),
               "\x95\xBD\x90\xAC"
               "31");
  EXPECT_STREQ(FormatDate("7 Sep 1868", "\x97\xDF\x98\x61"), "");
}

TEST_F(Dates, DatesAreShiftedByNumbersAndTexts) {
  const std::string zone = " " + MachineZone();
  const std::string here = "Tue, 5 Mar 2024 09:07:03" + zone;
  const char* const date = here.c_str();
  EXPECT_EQ(ShiftDate(date, 1), "Wed, 06 Mar 2024 09:07:03" + zone);
  EXPECT_EQ(ShiftDate(date, AsValue("1")), "Wed, 06 Mar 2024 09:07:03" + zone);
  EXPECT_EQ(ShiftDate(date, -1), "Mon, 04 Mar 2024 09:07:03" + zone);
  EXPECT_EQ(ShiftDate(date, 0), "Tue, 05 Mar 2024 09:07:03" + zone);
  EXPECT_EQ(ShiftDate(date, AsValue("-0.1.30")), "Tue, 05 Mar 2024 07:37:03" + zone);
  // The weekday and its week are those of the machine's clock.
  EXPECT_EQ(ShiftDate("6 Mar 2024 09:07:03", AsValue(kMonday)), "Mon, 04 Mar 2024 09:07:03" + zone);
  EXPECT_EQ(ShiftDate("6 Mar 2024 09:07:03", AsValue(kSaturday)), "Sat, 09 Mar 2024 09:07:03" + zone);
  EXPECT_EQ(ShiftDate(date, 65535), "Wed, 10 Aug 2203 09:07:03" + zone);
  EXPECT_EQ(ShiftDate(date, -65535), "Mon, 30 Sep 1844 09:07:03" + zone);
  const std::string saturday = "Sun, 10 Mar 2024 00:30:00 " + ZoneText(MachineBias() - 60);
  EXPECT_EQ(ShiftDate(saturday.c_str(), AsValue(kMonday)), "Mon, 04 Mar 2024 23:30:00" + zone);
  EXPECT_TRUE(Reports().empty());
}

TEST_F(Dates, OverflowUnderflowAndNoDateAreReportedInBothLanguages) {
  constexpr char kEnglish[] = "WFINFO.DLL: ShiftDate failed. Maybe date/time overflow or underflow.";
  constexpr char kSunday[] = "\x93\xFA";
  EXPECT_STREQ(ShiftDate("1 Jan 1601", -1), "");
  EXPECT_EQ(OneReport(), kEnglish);
  EXPECT_STREQ(ShiftDate("1 Jan 1601", AsValue(kSunday)), "");
  EXPECT_EQ(OneReport(), kEnglish);
  EXPECT_STREQ(ShiftDate(kDate, AsValue("99999999999999999999")), "");
  EXPECT_EQ(OneReport(), kEnglish);
  EXPECT_STREQ(ShiftDate("hello", 1), "");
  EXPECT_EQ(OneReport(), kEnglish);
  UseLanguage(false);
  EXPECT_STREQ(ShiftDate("1 Jan 1601", -1), "");
  // "ShiftDate kansu de naibu eraa ga okimashita. Tabun hizuke ga oobaafuroo mata wa andaafuroo shite imasu."
  EXPECT_EQ(
      OneReport(),
      "WFINFO.DLL: "
      "ShiftDate\x8A\xD6\x90\x94\x82\xC5\x93\xE0\x95\x94\x83\x47\x83\x89\x81\x5B\x82\xAA\x8B\x4E\x82\xAB"
      "\x82\xDC\x82\xB5\x82\xBD\x81\x42\x82\xBD\x82\xD4\x82\xF1\x93\xFA\x95\x74\x82\xAA\x83\x49\x81\x5B\x83"
      "\x6F\x81"
      "\x5B\x83\x74\x83\x8D\x81\x5B\x82\xDC\x82\xBD\x82\xCD\x83\x41\x83\x93\x83\x5F\x81\x5B\x83\x74\x83\x8D"
      "\x81\x5B"
      "\x82\xB5\x82\xC4\x82\xA2\x82\xDC\x82\xB7\x81\x42");
}

TEST_F(Dates, ShiftsCheckTheirTexts) {
  EXPECT_STREQ(ShiftDate(nullptr, 1), "");
  EXPECT_EQ(OneReport(), kMissing);
  for (const long long shift :
       {-65536LL, std::numeric_limits<long long>::max(), std::numeric_limits<long long>::min()}) {
    EXPECT_STREQ(ShiftDate(kDate, shift), "") << shift;
    EXPECT_EQ(OneReport(), kMissing) << shift;
  }
  // An address too; what lies there differs from system to system.
  EXPECT_EQ(std::string(ShiftDate("5 Mar 2024", 65536)).find("Aug 2203"), std::string::npos);
}

TEST_F(Dates, DatesAreSubtracted) {
  const std::string one_text = "Wed, 6 Mar 2024 01:00:00 " + MachineZone();
  const std::string two_text = "Tue, 5 Mar 2024 23:00:00 " + MachineZone();
  const char* const one = one_text.c_str();
  const char* const two = two_text.c_str();
  EXPECT_EQ(SubtractDate(one, two, nullptr), 1);
  EXPECT_EQ(SubtractDate(two, one, nullptr), -1);
  EXPECT_EQ(SubtractDate(one, two, "hour"), 2);
  EXPECT_EQ(SubtractDate(two, one, "hour"), -2);
  EXPECT_EQ(SubtractDate(one, two, "Hours"), 2);
  EXPECT_EQ(SubtractDate(one, two, "MINUTES"), 120);
  EXPECT_EQ(SubtractDate(one, two, "seconds"), 7200);
  EXPECT_EQ(SubtractDate("5 Mar 2024 10:59:59", "5 Mar 2024 09:00:00", "hour"), 1);
  EXPECT_EQ(SubtractDate("5 Mar 2024 09:00:00", "5 Mar 2024 10:59:59", "hour"), -1);
  EXPECT_EQ(SubtractDate("31 Dec 9999", "1 Jan 1601", nullptr), 3'067'670);
  EXPECT_EQ(SubtractDate("hello", two, nullptr), 0);
  EXPECT_EQ(SubtractDate(one, "hello", "hour"), 0);
  EXPECT_TRUE(Reports().empty());
}

// Texts of one moment in many zones, and of moments that are known to differ.
TEST_F(Dates, ZonesDoNotChangeDifferences) {
  constexpr int kZones[] = {0, 540, -480, -420, 330, -210, 345, 840, -720, 1439, -1439};
  const std::string here = "2024-03-05 09:07:03 " + MachineZone();
  for (const int east : kZones) {
    const std::string same = Shown(kTime, MachineBias() + east) + " " + ZoneText(-east);
    EXPECT_EQ(SubtractDate(same.c_str(), here.c_str(), "second"), 0) << same;
    EXPECT_EQ(SubtractDate(same.c_str(), here.c_str(), nullptr), 0) << same;
    EXPECT_EQ(SubtractDate("2024-03-05 09:07:03", same.c_str(), "second"), 0) << same;
    EXPECT_EQ(ShiftDate(same.c_str(), 0), "Tue, 05 Mar 2024 09:07:03 " + MachineZone()) << same;
    // Days are those of the machine's calendar, whatever the texts' own say.
    const std::string midnight = Shown({2024, 3, 2, 5, 0, 0, 0, 0}, MachineBias() + east) + ZoneText(-east);
    EXPECT_EQ(SubtractDate(here.c_str(), midnight.c_str(), nullptr), 0) << midnight;
    EXPECT_EQ(SubtractDate(midnight.c_str(), "4 Mar 2024 23:59:59", nullptr), 1) << midnight;
    for (const int other : kZones) {
      const std::string later = Shown(kTime, MachineBias() + other + 90) + " " + ZoneText(-other);
      EXPECT_EQ(SubtractDate(later.c_str(), same.c_str(), "minute"), 90) << later << " and " << same;
    }
  }
  EXPECT_EQ(SubtractDate("5 Mar 2024 09:07:03 JST", "4 Mar 2024 16:07:03 PST", "second"), 0);
  EXPECT_TRUE(Reports().empty());
}

TEST_F(Dates, AnUnknownUnitIsReportedInBothLanguages) {
  EXPECT_EQ(SubtractDate(kDate, "1 Jan 2024", "days"), 0);
  EXPECT_EQ(OneReport(), "WFINFO.DLL: Invalid SubtractDate parameter.");
  EXPECT_EQ(SubtractDate(kDate, "1 Jan 2024", ""), 0);
  EXPECT_EQ(OneReport(), "WFINFO.DLL: Invalid SubtractDate parameter.");
  UseLanguage(false);
  EXPECT_EQ(SubtractDate(kDate, "1 Jan 2024", "hou"), 0);
  // "SubtractDate no parameeta ga okashii desu."
  EXPECT_EQ(OneReport(),
            "WFINFO.DLL: "
            "SubtractDate\x82\xCC\x83\x70\x83\x89\x83\x81\x81\x5B\x83\x5E\x82\xAA\x82\xA8\x82\xA9\x82\xB5\x82"
            "\xA2\x82\xC5\x82\xB7\x81\x42");
}

TEST_F(Dates, SubtractionChecksItsTexts) {
  EXPECT_EQ(SubtractDate(nullptr, kDate, nullptr), 0);
  EXPECT_EQ(OneReport(), kMissing);
  EXPECT_EQ(SubtractDate(kDate, nullptr, nullptr), 0);
  EXPECT_EQ(OneReport(), kMissing);
  EXPECT_EQ(SubtractDate(kDate, kDate, reinterpret_cast<const char*>(1)), 0);
  EXPECT_EQ(OneReport(), kMissing);
}

// The pure arithmetic against the system's conversion.
void ExpectSystemAgrees(wfinfo::FileTicks ticks) {
  const FILETIME file_time = {static_cast<DWORD>(ticks),
                              static_cast<DWORD>(static_cast<std::uint64_t>(ticks) >> 32)};
  SYSTEMTIME system = {};
  const bool converted = FileTimeToSystemTime(&file_time, &system) != 0;
  const std::optional<wfinfo::CivilTime> ours = wfinfo::CivilFromTicks(ticks);
  ASSERT_EQ(ours.has_value(), converted) << ticks;
  if (converted) {
    ASSERT_EQ(std::memcmp(&*ours, &system, sizeof system), 0) << ticks;
  }
}

TEST(CivilTimeOfTheSystem, AgreesOverRandomTicks) {
  std::mt19937_64 random(46);
  for (int i = 0; i < 300'000; ++i) ExpectSystemAgrees(static_cast<wfinfo::FileTicks>(random()));
  constexpr wfinfo::FileTicks kCentury = 36'525 * wfinfo::kTicksPerDay;
  for (int i = 0; i < 300'000; ++i)
    ExpectSystemAgrees(static_cast<wfinfo::FileTicks>(random() % (10 * kCentury)));
  constexpr auto kMin = std::numeric_limits<wfinfo::FileTicks>::min();
  constexpr auto kMax = std::numeric_limits<wfinfo::FileTicks>::max();
  for (const wfinfo::FileTicks ticks : {wfinfo::FileTicks{0}, wfinfo::FileTicks{-1}, kMax, kMax - 1, kMin}) {
    ExpectSystemAgrees(ticks);
  }
}

}  // namespace
