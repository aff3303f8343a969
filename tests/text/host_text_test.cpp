#include "src/text/host_text.h"

#include <gtest/gtest.h>

#include <string>

namespace wfinfo {
namespace {

using namespace std::string_view_literals;

struct UnitCase {
  std::string_view text;
  std::size_t length;
  const char* why;
};

TEST(HostText, UnitsAreRecognised) {
  const UnitCase cases[] = {
      {""sv, 0, "nothing"},
      {"a"sv, 1, "ASCII"},
      {"\x80z"sv, 1, "0x80 is no lead byte"},
      {"\x81\x40"sv, 2, "first lead byte"},
      {"\x9F\x40"sv, 2, "last of the first range"},
      {"\xA0\x40"sv, 1, "half-width range"},
      {"\xDF\x40"sv, 1, "half-width range"},
      {"\xE0\x40"sv, 2, "second range"},
      {"\xFC\x40"sv, 2, "last lead byte"},
      {"\xFD\x40"sv, 1, "above the lead bytes"},
      {"\x83"sv, 1, "a lead byte at the end stands alone"},
      {"\x1A\x9A\x80\x84"sv, 4, "the smallest escape"},
      {"\x1A\x80\x80\x0D"sv, 4, "the last byte may be a CR"},
      {"\x1A\x80\x80\x8F"sv, 4, "bit 7 of the last byte does not count"},
      {"\x1A\x80\x80\x88"sv, 1, "bit 2 of the last byte is missing"},
      {"\x1A\x80\x80\x94"sv, 1, "low seven bits above 15"},
      {"\x1A\x80\x7F\x84"sv, 1, "third byte without bit 7"},
      {"\x1A\x7F\x80\x84"sv, 1, "second byte without bit 7"},
      {"\x1A\x80\x80"sv, 1, "a truncated escape"},
  };
  for (const UnitCase& c : cases) EXPECT_EQ(UnitLength(c.text), c.length) << c.why;
}

TEST(HostText, OnlyAPlaceInsideACharacterSplitsIt) {
  EXPECT_TRUE(SplitsUnit("\x83\x41", 1));
  for (const std::size_t place : {0u, 2u, 3u, 5u}) EXPECT_FALSE(SplitsUnit("\x83\x41", place)) << place;
}

struct CutCase {
  std::string text;
  std::size_t limit;
  std::size_t length;
  const char* why;
};

TEST(HostText, CutsKeepWholeUnits) {
  const std::string escape = "\x1A\xA9\x80\x85";
  const CutCase cases[] = {
      {"abc", 4, 3, "shorter than the limit: whole"},
      {"abcd", 4, 3, "one byte too long"},
      {"ab\x83\x41", 4, 2, "a double-byte character across the cut"},
      {"a\x83\x41"
       "d",
       4, 3, "a double-byte character before the cut"},
      {"\x83\x83\x83\x83", 3, 2, "trail bytes that look like lead bytes, walked from the start"},
      {"\x83\x83\x83\x83", 4, 2, "the same, cut inside the second character"},
      {"a" + escape, 3, 1, "one byte after 0x1A"},
      {"a" + escape, 4, 1, "two bytes after 0x1A"},
      {"a" + escape, 5, 1, "three bytes after 0x1A"},
      {"a" + escape + "b", 6, 5, "right behind the escape"},
      {"\x1A\x1A"
       "abc",
       4, 1, "the nearest 0x1A decides"},
      {"abc", 1, 0, "no room but for the zero"},
  };
  for (const CutCase& c : cases) {
    EXPECT_EQ(CutLength(c.text, c.limit), c.length) << c.why;
    std::string copy(c.limit, '#');
    EXPECT_EQ(CopyWithinLimit(copy.data(), c.text, c.limit), c.length) << c.why;
    EXPECT_EQ(copy.substr(0, c.length + 1), c.text.substr(0, c.length) + '\0') << c.why;
  }
}

TEST(HostText, ACutLooksForTheNearestOfThreeBytes) {
  EXPECT_EQ(CutBefore("\x1A"
                      "AB\x83\x41",
                      4),
            0u)
      << "behind a character that is left out";
  EXPECT_EQ(CutBefore("\x1A"
                      "ab\x1A"
                      "cd",
                      3),
            0u)
      << "what stands behind the cut does not count";
  EXPECT_EQ(CutBefore("a\x1A"
                      "b\x1A"
                      "xy",
                      4),
            3u)
      << "the nearest of two";
  char copy[] = "##";
  EXPECT_EQ(CopyWithinLimit(copy, std::string_view(), sizeof copy), 0u);
  EXPECT_STREQ(copy, "");
}

// The limit of a reported message: 496 with its terminator.
TEST(HostText, AReportedTextKeepsItsFirst495BytesInWholeUnits) {
  const std::string filler(493, 'x');
  const std::string escape = "\x1A\xA9\x80\x85";
  const CutCase cases[] = {
      {filler + "yz", 496, 495, "495 bytes: kept whole"},
      {filler + "yz!", 496, 495, "496 bytes: the last is lost"},
      {filler + "y\x83\x41", 496, 494,
       "496 bytes that end in a double-byte character: its two bytes are lost"},
      {filler + "\x83\x41", 496, 495, "a double-byte character that just fits"},
      {filler + escape, 496, 493, "an escape across the cut"},
      {filler.substr(2) + escape, 496, 495, "an escape that just fits"},
  };
  for (const CutCase& c : cases) EXPECT_EQ(CutLength(c.text, c.limit), c.length) << c.why;
}

}  // namespace
}  // namespace wfinfo
