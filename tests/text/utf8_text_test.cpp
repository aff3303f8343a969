#include "src/text/utf8_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

#include "src/text/host_text.h"
#include "src/text/wide_text.h"
#include "tests/support/iconv_code_page.h"

namespace wfinfo {
namespace {

using namespace std::string_literals;
using wfinfo_test::IconvCodePage;

std::string Encoded(std::uint_fast32_t code) {
  std::string text;
  if (code < 0x80) return {static_cast<char>(code)};
  const int trails = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  constexpr std::uint_fast32_t kLeads[] = {0, 0xC0, 0xE0, 0xF0};
  text += static_cast<char>(kLeads[trails] | code >> (6 * trails));
  for (int i = trails - 1; i >= 0; --i) text += static_cast<char>(0x80 | (code >> (6 * i) & 0x3F));
  return text;
}

// The definition: the only well-formed texts are those that an encoder writes.
bool SlowIsWellFormed(std::string_view text) {
  while (!text.empty()) {
    std::size_t length = 0;
    for (std::size_t size = 1; size <= 4 && size <= text.size() && length == 0; ++size) {
      constexpr unsigned kMasks[] = {0x7F, 0x1F, 0x0F, 0x07};
      unsigned code = static_cast<unsigned char>(text[0]) & kMasks[size - 1];
      for (std::size_t i = 1; i < size; ++i) code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
      const bool scalar = code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
      if (scalar && Encoded(code) == text.substr(0, size)) length = size;
    }
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

TEST(Utf8Validation, AllShortSequencesInEveryPositionOfABlock) {
  // Each border of the definition, combined freely.
  const unsigned char kBytes[] = {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0,
                                  0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF,
                                  0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xF8, 0xFC, 0xFF};
  for (const unsigned char a : kBytes) {
    for (const unsigned char b : kBytes) {
      for (const unsigned char c : kBytes) {
        for (const int d : {0x41, 0x80, 0x90, 0xBF, 0xC2, 0xFF}) {
          const std::string sequence = {static_cast<char>(a), static_cast<char>(b), static_cast<char>(c),
                                        static_cast<char>(d)};
          const std::string text = std::string(29 + a % 4, 'x') + sequence + std::string(b % 2 * 40, 'y');
          const bool expected = SlowIsWellFormed(sequence);
          for (const Utf8Validator* const validator : RunnableUtf8Validators()) {
            ASSERT_EQ(validator->is_well_formed(sequence), expected) << validator->name;
            ASSERT_EQ(validator->is_well_formed(text), expected) << validator->name;
          }
        }
      }
    }
  }
}

TEST(Utf8Validation, RandomTextsAgreeWithTheDefinition) {
  std::mt19937 random(99);
  int good = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (std::size_t length = random() % 60; length > 0; --length) {
      const std::uint_fast32_t kinds[] = {random() % 0x80, random() % 0x800, 0x3000 + random() % 0x3000,
                                          0x10000 + random() % 0x100000};
      text += Encoded(kinds[random() % 4]);
    }
    if (round % 2 == 0 && !text.empty()) text[random() % text.size()] = static_cast<char>(random());
    if (round % 3 == 0 && !text.empty()) text.resize(text.size() - 1);
    const std::unique_ptr<char[]> exact(new char[text.size()]);
    std::copy(text.begin(), text.end(), exact.get());
    const bool expected = SlowIsWellFormed(text);
    good += expected;
    for (const Utf8Validator* const validator : RunnableUtf8Validators()) {
      ASSERT_EQ(validator->is_well_formed({exact.get(), text.size()}), expected) << validator->name << round;
    }
    ASSERT_EQ(IsWellFormedUtf8(text), expected);
  }
  EXPECT_GT(good, 5000);
  EXPECT_LT(good, 15000);
}

// Texts that are cut short at a block's end, and go on with a whole block of ASCII or end there.
TEST(Utf8Validation, ASequenceCutShortAtABlocksEndIsSeen) {
  for (const std::string lead : {"\xC3", "\xE3\x81", "\xF0\x9F\x98"}) {
    for (std::size_t end = lead.size(); end <= 260; ++end) {
      for (const std::size_t behind : {0u, 1u, 64u, 128u, 200u}) {
        const std::string text = std::string(end - lead.size(), 'x') + lead + std::string(behind, 'y');
        for (const Utf8Validator* const validator : RunnableUtf8Validators()) {
          ASSERT_FALSE(validator->is_well_formed(text)) << validator->name << end << " " << behind;
        }
      }
    }
  }
}

struct LikelyCase {
  std::string text;
  bool likely;
  const char* why;
};

TEST(LikelyUtf8, FollowsTheRule) {
  const LikelyCase cases[] = {
      {"", false, "nothing"},
      {"plain ASCII, longer than one block", false, "ASCII is left alone"},
      {Encoded(0x65E5), true, "an ideograph"},
      {"plain ASCII, longer than one block" + Encoded(0x65E5), true, "behind ASCII"},
      {Encoded(0x3042) + "\x80", false, "a trail byte alone"},
      {"\xE3\x81", false, "cut short"},
      {"\xE3\x81x", false, "a trail byte missing"},
      {"\xC3\xA9", true, "two bytes"},
      {"\xF0\x9F\x98\x80", true, "four bytes count by their low 16 bits: 0xF600"},
      {"\xF8\x88\x80\x80\x80", false, "five bytes"},
      {"\x93\xFA\x96\x7B", false, "Shift-JIS"},
      {"\xB1\xB2", false, "half-width katakana of Shift-JIS"},
      {Encoded(0xFEFF) + "\x93\xFA", true, "a byte-order mark settles it"},
      {"abc" + Encoded(0xFEFF) + "\xFF", true, "also behind ASCII"},
      {Encoded(0x3042) + Encoded(0xFEFF) + "\xFF", false, "but not behind another character"},
      {"\xC0\x80", true, "not the shortest form: kept"},
      {std::string(32, 'a'), false, "ASCII that fills its blocks"},
      {Encoded(0x65E5) + std::string(16, 'a'), true, "such ASCII behind an ideograph"},
      {Encoded(0x65E5) + std::string(20, 'a') + "\xE3", false, "a sequence cut short far behind"},
  };
  for (const LikelyCase& c : cases) EXPECT_EQ(IsLikelyUtf8(c.text), c.likely) << c.why;
}

TEST(LikelyUtf8, OnlyPlausibleBlocksPass) {
  for (unsigned upper = 0; upper <= 0xFF; ++upper) {
    const unsigned code = upper == 0 ? 0xE9 : upper << 8 | 0x42;
    const bool implausible = upper == 0x08 || (upper >= 0x14 && upper <= 0x16) ||
                             (upper >= 0x1A && upper <= 0x1C) || upper == 0x2C || upper == 0x2D ||
                             (upper >= 0x35 && upper <= 0x4C) || (upper >= 0xA5 && upper <= 0xAB);
    EXPECT_EQ(IsLikelyUtf8(Encoded(0x3042) + Encoded(code)), !implausible) << std::hex << upper;
  }
}

std::string Host(const std::string& utf8) {
  std::string host(Utf8ToHostRoom(utf8), '#');
  host.resize(Utf8ToHostMbcs(utf8, host.data(), IconvCodePage()));
  return host;
}

struct ConversionCase {
  std::string utf8;
  std::string host;
  const char* why;
};

TEST(Utf8ToHost, FollowsTheRule) {
  const ConversionCase cases[] = {
      {"", "", "nothing"},
      {"abc", "abc", "ASCII"},
      {"a\x1A", "a\x1A\x9A\x80\x84", "0x1A becomes an escape"},
      {Encoded(0x65E5) + Encoded(0x672C), "\x93\xFA\x96\x7B", "double-byte characters"},
      {Encoded(0xFF71), "\xB1", "one byte"},
      {Encoded(0xA9), "\x1A\xA9\x80\x85", "outside the code page, narrow"},
      {Encoded(0xAC00), "\x1A\x80\xAC\x8E", "outside the code page, wide"},
      {Encoded(0xFEFF) + "a" + Encoded(0xFEFF), "a", "byte-order marks are dropped"},
      {Encoded(0x1F600) + "b", "?b", "four bytes"},
      {"\xF8\x88\x80\x80\x80z", "?z", "five bytes"},
      {"\xFC\x84\x80\x80\x80\x80z", "?z", "six bytes"},
      {"\xC0\x80z", "?z", "U+0000 in two bytes"},
      {"\xC1\x81z", "Az", "ASCII in two bytes is copied"},
      {"a\xE3\x81", "a", "cut short: the conversion ends"},
      {"a\xE3\x81"
       "b\xE3",
       "a??b", "a trail byte missing: each byte is replaced"},
      {"\x80\xBF\xFE\xFF", "????", "bytes that start nothing"},
      {"a\x80", "a?", "such a byte at the end: nothing is cut short there"},
      {"a\xFE", "a?", "0xFE at the end"},
      {"a\xFF", "a?", "0xFF at the end"},
  };
  for (const ConversionCase& c : cases) EXPECT_EQ(Host(c.utf8), c.host) << c.why;
}

TEST(Utf8ToHost, EveryCharacterConvertsAsItsUnitDoes) {
  for (unsigned code = 0x80; code <= 0xFFFF; ++code) {
    if (code == 0xFEFF) continue;
    const auto unit = static_cast<char16_t>(code);
    char expected[4];
    const std::size_t length = WideToHost({&unit, 1}, expected, IconvCodePage());
    ASSERT_EQ(Host(Encoded(code)), std::string(expected, length)) << std::hex << code;
  }
}

TEST(Utf8ToHost, TheRoomSufficesForAnything) {
  std::mt19937 random(11);
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (std::size_t length = random() % 30; length > 0; --length) {
      text += random() % 3 == 0 ? std::string(1, '\x1A') : Encoded(0x80 + random() % 0xFF00);
      if (random() % 8 == 0) text += static_cast<char>(random());
    }
    const std::size_t room = Utf8ToHostRoom(text);
    const std::unique_ptr<char[]> out(new char[room]);
    ASSERT_LT(Utf8ToHostMbcs(text, out.get(), IconvCodePage()), room);
  }
}

}  // namespace
}  // namespace wfinfo
