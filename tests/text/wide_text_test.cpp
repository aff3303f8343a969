// Host text to UTF-16 and back. That the tables agree with Windows is tested with the library itself.
#include "src/text/wide_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "src/text/host_text.h"
#include "src/text/utf8_text.h"
#include "tests/support/iconv_code_page.h"

namespace wfinfo {
namespace {

using namespace std::string_literals;
using wfinfo_test::IconvCodePage;
using wfinfo_test::kIconvCalls;

std::u16string Wide(const std::string& host) {
  std::u16string wide(host.size(), u'#');
  wide.resize(HostToWide(host, wide.data(), IconvCodePage()));
  return wide;
}

std::string Host(const std::u16string& wide) {
  std::string host(4 * wide.size(), '#');
  host.resize(WideToHost(wide, host.data(), IconvCodePage()));
  return host;
}

struct WidthCase {
  char16_t unit;
  bool wide;
  const char* why;
};

TEST(FullWidth, FollowsTheRangesAndTheTables) {
  const WidthCase cases[] = {
      {0x0041, false, "ASCII"},
      {0x00FF, false, "below U+0100 all are narrow"},
      {0x10FF, false, "Georgian"},
      {0x1100, true, "Hangul leading consonant, by table"},
      {0x115F, true, "the last of them"},
      {0x1160, false, "Hangul vowel"},
      {0x231A, true, "watch"},
      {0x2E80, true, "CJK radical"},
      {0x2FFB, true, "ideographic description"},
      {0x3000, true, "first of the fixed range"},
      {0x4DC0, true, "hexagram: inside the fixed range"},
      {0x9FFF, true, "last of the fixed range"},
      {0xA000, true, "Yi, by table"},
      {0xA4D0, false, "Lisu"},
      {0xA960, true, "Hangul extension"},
      {0xABFF, false, "end of the table"},
      {0xAC00, true, "Hangul syllable"},
      {0xD7FF, true, "last before the surrogates"},
      {0xD800, false, "surrogate"},
      {0xDFFF, false, "surrogate"},
      {0xE000, true, "private use"},
      {0xFAFF, true, "compatibility ideograph"},
      {0xFB00, false, "Latin ligature, by table"},
      {0xFE30, true, "vertical form"},
      {0xFEFF, false, "byte-order mark"},
      {0xFF00, false, "before the full-width forms"},
      {0xFF01, true, "first full-width form"},
      {0xFF60, true, "last of the first part"},
      {0xFF61, false, "half-width forms"},
      {0xFFDF, false, "half-width forms"},
      {0xFFE0, true, "full-width signs"},
      {0xFFE6, true, "full-width signs"},
      {0xFFE7, false, "behind them"},
      {0xFFFF, false, "the last unit"},
  };
  for (const WidthCase& c : cases) EXPECT_EQ(IsFullWidth(c.unit), c.wide) << c.why;
}

// East_Asian_Width of Unicode 14.0.0, W and F, typed as ranges: what the tables of bits are held against.
struct WidthRange {
  unsigned first, last;
};
constexpr WidthRange kWideRanges[] = {
    {0x1100, 0x115F}, {0x231A, 0x231B}, {0x2329, 0x232A}, {0x23E9, 0x23EC}, {0x23F0, 0x23F0},
    {0x23F3, 0x23F3}, {0x25FD, 0x25FE}, {0x2614, 0x2615}, {0x2648, 0x2653}, {0x267F, 0x267F},
    {0x2693, 0x2693}, {0x26A1, 0x26A1}, {0x26AA, 0x26AB}, {0x26BD, 0x26BE}, {0x26C4, 0x26C5},
    {0x26CE, 0x26CE}, {0x26D4, 0x26D4}, {0x26EA, 0x26EA}, {0x26F2, 0x26F3}, {0x26F5, 0x26F5},
    {0x26FA, 0x26FA}, {0x26FD, 0x26FD}, {0x2705, 0x2705}, {0x270A, 0x270B}, {0x2728, 0x2728},
    {0x274C, 0x274C}, {0x274E, 0x274E}, {0x2753, 0x2755}, {0x2757, 0x2757}, {0x2795, 0x2797},
    {0x27B0, 0x27B0}, {0x27BF, 0x27BF}, {0x2B1B, 0x2B1C}, {0x2B50, 0x2B50}, {0x2B55, 0x2B55},
    {0x2E80, 0x2E99}, {0x2E9B, 0x2EF3}, {0x2F00, 0x2FD5}, {0x2FF0, 0x2FFB}, {0x3000, 0xA48C},
    {0xA490, 0xA4C6}, {0xA960, 0xA97C}, {0xAC00, 0xD7FF}, {0xE000, 0xFAFF}, {0xFE10, 0xFE19},
    {0xFE30, 0xFE52}, {0xFE54, 0xFE66}, {0xFE68, 0xFE6B}, {0xFF01, 0xFF60}, {0xFFE0, 0xFFE6},
};

TEST(FullWidth, OfEveryUnitIsThatOfTheStandard) {
  const WidthRange* range = std::begin(kWideRanges);
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    while (range != std::end(kWideRanges) && range->last < unit) ++range;
    const bool wide = range != std::end(kWideRanges) && unit >= range->first;
    EXPECT_EQ(IsFullWidth(static_cast<char16_t>(unit)), wide) << std::hex << unit;
  }
}

TEST(WideText, AnEscapeCarriesEveryUnit) {
  for (unsigned value = 0; value <= 0xFFFF; ++value) {
    const auto unit = static_cast<char16_t>(value);
    char escape[4];
    ASSERT_EQ(WriteEscape(escape, unit), escape + 4);
    ASSERT_TRUE(StartsWithEscape({escape, 4})) << value;
    ASSERT_EQ(EscapedUnit(escape), unit);
    ASSERT_EQ((escape[3] & 0x08) != 0, IsFullWidth(unit)) << value;
  }
}

struct TextCase {
  std::string host;
  std::u16string wide;
  const char* why;
};

TEST(WideText, HostTextBecomesUtf16) {
  const TextCase cases[] = {
      {"", u"", "nothing"},
      {"abc", u"abc", "ASCII"},
      {"0123456789abcdefghij", u"0123456789abcdefghij", "ASCII over one block"},
      {"\x93\xFA\x96\x7B", u"\u65E5\u672C", "double-byte characters"},
      {"a\xB1z", u"a\uFF71z", "half-width katakana"},
      {"\x1A\xA9\x80\x85", u"\u00A9", "an escape"},
      {"\x1A\x80\x80\x84"s, u"\0"s, "an escape of U+0000"},
      {"\x1A\x80\x80\x8F", u"\x8080", "bits 7 and 15 come from the last byte"},
      {"x\x1Ay", u"x\x1Ay", "a 0x1A that starts no escape"},
      {"\x1A\xA9\xB1", u"\x1A\uFF69\uFF71", "an escape cut short"},
      {"\x1A", u"\x1A", "0x1A at the end"},
      {"0123456789abcde\x1A\xA9\x80\x85tail of some length", u"0123456789abcde\u00A9tail of some length",
       "an escape across the first block"},
  };
  for (const TextCase& c : cases) EXPECT_EQ(Wide(c.host), c.wide) << c.why;
}

TEST(WideText, Utf16BecomesHostText) {
  const TextCase cases[] = {
      {"abc", u"abc", "ASCII"},
      {"\x1A\x9A\x80\x84", u"\x1A", "0x1A is always written as an escape"},
      {"\x93\xFA\x96\x7B", u"\u65E5\u672C", "double-byte characters"},
      {"\xB1", u"\uFF71", "half-width katakana"},
      {"\x1A\xA9\x80\x85", u"\u00A9", "outside the code page, narrow"},
      {"\x1A\x80\xAC\x8E", u"\uAC00", "outside the code page, wide"},
      {"\x1A\xBD\xD8\x86\x1A\x80\xDE\x86", u"\xD83D\xDE00", "a surrogate pair is two escapes"},
      {"0123456789abcde\x1A\x9A\x80\x84xyz", u"0123456789abcde\x1Axyz", "0x1A in the first block"},
      {"0123456789abcdefghijklmnopqrstuvwxyz", u"0123456789abcdefghijklmnopqrstuvwxyz",
       "ASCII over two blocks"},
  };
  for (const TextCase& c : cases) EXPECT_EQ(Host(c.wide), c.host) << c.why;
}

TEST(WideText, ALeadByteAtTheEndTakesNothingFromBehind) {
  const std::string_view behind = "\x93\xFA";
  char16_t units[2];
  EXPECT_EQ(HostToWide(behind.substr(0, 1), units, IconvCodePage()), 1u);
  EXPECT_EQ(units[0], IconvCodePage().Single(0x93));
}

// The slow reading: every character by itself, through the calls.
std::u16string SlowWide(const std::string& host) {
  std::u16string wide;
  for (std::size_t i = 0; i < host.size();) {
    const std::string_view rest = std::string_view(host).substr(i);
    if (StartsWithEscape(rest)) {
      wide += EscapedUnit(rest.data());
      i += 4;
    } else if (static_cast<unsigned char>(host[i]) > 0x7F) {
      const int length = IsLeadByte(host[i]) && rest.size() > 1 && rest[1] != '\0' ? 2 : 1;
      char16_t units[2];
      const int count = kIconvCalls.to_wide(rest.data(), length, units);
      wide += count > 0 ? std::u16string(units, static_cast<std::size_t>(count)) : u"?";
      i += static_cast<std::size_t>(length);
    } else {
      wide += static_cast<char16_t>(host[i++]);
    }
  }
  return wide;
}

std::string SlowHost(const std::u16string& wide) {
  std::string host;
  for (const char16_t unit : wide) {
    char bytes[4] = {};
    bool lost = false;
    if (unit < 0x80 && unit != 0x1A) {
      host += static_cast<char>(unit);
      continue;
    }
    const int count = unit == 0x1A ? 0 : kIconvCalls.to_host(unit, bytes, &lost);
    if (unit == 0x1A || lost) {
      WriteEscape(bytes, unit);
      host.append(bytes, 4);
    } else {
      host.append(bytes, static_cast<std::size_t>(count));
    }
  }
  return host;
}

TEST(WideText, RandomHostTextsConvertAsCharacterByCharacter) {
  std::mt19937 random(20240601);
  const std::string kinds[] = {"a",    "\x1A",     "\x93\xFA",    "\xB1",     "\x1A\xA9\x80\x85",
                               "\x81", "\xFC\xFC", "\x80",        "\x1A\x80", "plain text of some length",
                               "\x84", "\0"s,      "\xA9\x80\x85"};
  for (int round = 0; round < 3000; ++round) {
    std::string host;
    for (std::size_t parts = random() % 24; parts > 0; --parts) host += kinds[random() % std::size(kinds)];
    const std::string before = host;
    ASSERT_EQ(Wide(host), SlowWide(host)) << "round " << round;
    ASSERT_EQ(host, before);
  }
}

TEST(WideText, RandomUtf16ConvertsAsCharacterByCharacterAndComesBack) {
  std::mt19937 random(7);
  for (int round = 0; round < 2000; ++round) {
    std::u16string wide;
    for (std::size_t length = random() % 60; length > 0; --length) {
      const unsigned range = random() % 4;
      wide += static_cast<char16_t>(range == 0   ? random()
                                    : range == 1 ? 0x3000 + random() % 0x100
                                                 : random() % 0x80);
    }
    const std::string host = Host(wide);
    ASSERT_EQ(host, SlowHost(wide)) << "round " << round;
    ASSERT_EQ(SlowWide(host), Wide(host));
  }
}

TEST(WideText, WhatNeedsAnEscapeComesBackUnchanged) {
  for (unsigned value = 1; value <= 0xFFFF; ++value) {
    const std::u16string wide(1, static_cast<char16_t>(value));
    const std::string host = Host(wide);
    if (host.size() != 4) continue;
    ASSERT_EQ(Wide(host), wide) << value;
  }
}

TEST(CodePage, OtherOutcomesThanOneOrTwoBytesAreKnown) {
  const CharacterCalls calls = {[](const char*, int, char16_t* units) {
                                  units[0] = u'x';
                                  units[1] = u'y';
                                  return 2;
                                },
                                [](const char*) { return false; },
                                [](char16_t, char*, bool* lost) {
                                  *lost = false;
                                  return 0;
                                }};
  static CodePagePages pages;
  const CodePage code_page(calls, pages);
  char16_t units[4];
  EXPECT_EQ(HostToWide("\x81\x40", units, code_page), 2u);
  EXPECT_EQ(units[1], u'y') << "two units for one character";
  char host[4];
  EXPECT_EQ(WideToHost(u"\u3042", host, code_page), 1u);
  EXPECT_EQ(host[0], '?');
  EXPECT_FALSE(code_page.IsPair(CodePage::LeadRow(0x81), 0x40));
  EXPECT_EQ(Utf8ToHostMbcs("\xE3\x81\x82", host, code_page), 1u);
  EXPECT_EQ(host[0], '?') << "from UTF-8 too";
}

TEST(CodePage, AZeroByteIsNoHostForm) {
  const CharacterCalls calls = {[](const char*, int, char16_t*) { return 0; },
                                [](const char*) { return false; },
                                [](char16_t unit, char* bytes, bool*) {
                                  bytes[0] = '\0';
                                  bytes[1] = 'x';
                                  return unit % 2 == 0 ? 1 : 2;
                                }};
  static CodePagePages pages;
  const CodePage code_page(calls, pages);
  for (const char16_t unit : {u'\u3042', u'\u3043'}) {
    char host[4];
    EXPECT_EQ(WideToHost(std::u16string_view(&unit, 1), host, code_page), 1u);
    EXPECT_EQ(host[0], '?');
  }
  char16_t wide[2];
  EXPECT_EQ(HostToWide("\x81\x40", wide, code_page), 1u);
  EXPECT_EQ(wide[0], u'?') << "a conversion that fails";
}

// A system whose answers show which character was asked for, and how often one was. What it does not say to have
// written holds garbage.
struct OddSystem {
  static constexpr char16_t kGarbage = u'!';
  static inline int wide_asked = 0, pairs_asked = 0, host_asked = 0;

  static std::uint32_t Units(unsigned first, unsigned second, int length) {
    const auto unit =
        static_cast<std::uint32_t>(first << 8 | second << 1 | static_cast<unsigned>(length - 1));
    const std::uint32_t answers[] = {u'?', unit, unit | 0xABCD0000, 0};
    return answers[(first + second) % 4];
  }
  static int ToWide(const char* bytes, int length, char16_t* units) {
    ++wide_asked;
    const unsigned first = static_cast<unsigned char>(bytes[0]);
    const unsigned second = length == 2 ? static_cast<unsigned char>(bytes[1]) : 0;
    const std::uint32_t answer = Units(first, second, length);
    const int count = static_cast<int>((first + second) % 4);
    units[0] = count == 0 ? kGarbage : static_cast<char16_t>(answer);
    units[1] = count == 2 ? static_cast<char16_t>(answer >> 16) : kGarbage;
    return count == 3 ? 1 : count;
  }
  static bool IsPair(unsigned first, unsigned second) { return (first + second) % 3 == 1; }
  static bool AskIsPair(const char* bytes) {
    ++pairs_asked;
    return IsPair(static_cast<unsigned char>(bytes[0]), static_cast<unsigned char>(bytes[1]));
  }
  static std::uint16_t Host(unsigned unit) {
    const auto two = static_cast<std::uint16_t>(unit * 7 | 0x8100);
    const std::uint16_t answers[] = {kNeedsEscape, static_cast<std::uint16_t>(unit % 255 + 1), two,
                                     kNoHostForm, kNoHostForm};
    return answers[unit % 5];
  }
  static int ToHost(char16_t unit, char* bytes, bool* lost) {
    ++host_asked;
    *lost = unit % 5 == 0;
    const std::uint16_t answer = Host(unit);
    const int count = unit % 5;
    bytes[0] = static_cast<char>(count == 1 ? answer : count == 2 ? answer >> 8 : kGarbage);
    bytes[1] = static_cast<char>(count == 2 ? answer : kGarbage);
    return count == 4 ? 0 : count;
  }
};

TEST(CodePage, EveryEntryIsTheSystemsAnswerAndAskedForOnce) {
  const CharacterCalls calls = {OddSystem::ToWide, OddSystem::AskIsPair, OddSystem::ToHost};
  static CodePagePages pages;
  const CodePage code_page(calls, pages);
  for (const char* why : {"filled by the first question", "from memory"}) {
    for (unsigned byte = 0; byte < 0x100; ++byte) {
      const auto second = static_cast<unsigned char>(byte);
      EXPECT_EQ(code_page.Single(second), OddSystem::Units(byte, 0, 1)) << byte << ", " << why;
      for (unsigned row = 0; row < CodePage::kLeadRows; ++row) {
        const unsigned lead = row < 31 ? 0x81 + row : 0xE0 + row - 31;
        ASSERT_EQ(code_page.Pair(row, second), OddSystem::Units(lead, byte, 2))
            << lead << byte << ", " << why;
        ASSERT_EQ(code_page.IsPair(row, second), OddSystem::IsPair(lead, byte))
            << lead << byte << ", " << why;
      }
    }
    for (unsigned unit = 0x80; unit <= 0xFFFF; ++unit) {
      ASSERT_EQ(code_page.Host(static_cast<char16_t>(unit)), OddSystem::Host(unit)) << unit << ", " << why;
    }
  }
  char16_t units[2];
  char bytes[4];
  EXPECT_EQ(HostToWide("\x80", units, code_page), 1u);
  EXPECT_EQ(units[0], u'?') << "the first byte that is the system's";
  EXPECT_EQ(WideToHost(u"\x80", bytes, code_page), 1u);
  EXPECT_EQ(bytes[0], '?') << "the first unit that is";
  EXPECT_EQ(Utf8ToHostMbcs("\xC2\x80", bytes, code_page), 1u);
  EXPECT_EQ(bytes[0], '?') << "from UTF-8 too";
  EXPECT_EQ(OddSystem::wide_asked, 61 * 256);
  EXPECT_EQ(OddSystem::pairs_asked, 60 * 256);
  EXPECT_EQ(OddSystem::host_asked, 256 * 256);
}

}  // namespace
}  // namespace wfinfo
