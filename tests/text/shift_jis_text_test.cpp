#include "src/text/shift_jis_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

#include "src/text/host_text.h"
#include "tests/support/iconv_code_page.h"

namespace wfinfo {
namespace {

using wfinfo_test::IconvCodePage;

struct ShiftJisCase {
  std::string text;
  bool passes;
  const char* why;
};

TEST(ShiftJisTest, FollowsTheRule) {
  const ShiftJisCase cases[] = {
      {"", true, "an empty text"},
      {"ASCII only, over more than one block of 16", true, "ASCII"},
      {"\x93\xFA\x96\x7B", true, "common characters"},
      {"\x93", false, "a lead byte at the end"},
      {"\x93\x3F", false, "a trail byte below 0x40"},
      {"\x93\xFD", false, "no such character"},
      {"\xB1\xB2\x80\xA0", true, "single bytes"},
      {"a\xFD", false, "0xFD"},
      {"a\xFF", false, "0xFF"},
      {"\x99\x40", false, "rare characters alone"},
      {"\x99\x40\x99\x41\x93\xFA", true, "two rare ones for a common one"},
      {"\x99\x40\x99\x41\x99\x42\x93\xFA", false, "three rare ones"},
      {"\x98\x40\xE0\x40\x88\x9F", true, "0x98 is common, 0xE0 rare"},
  };
  for (const ShiftJisCase& c : cases)
    EXPECT_EQ(LooksLikeShiftJis(c.text, IconvCodePage()), c.passes) << c.why;
}

TEST(ShiftJisTest, BytesBelow0x40AreNoTrailBytesWhateverTheSystemSays) {
  const CharacterCalls calls = {[](const char*, int, char16_t*) { return 1; },
                                [](const char*) { return true; }, [](char16_t, char*, bool*) { return 0; }};
  static CodePagePages pages;
  const CodePage code_page(calls, pages);
  EXPECT_FALSE(LooksLikeShiftJis("\x93\x3F", code_page));
  EXPECT_TRUE(LooksLikeShiftJis("\x93\x40", code_page));
}

// The rule, character by character.
bool SlowLooksLikeShiftJis(const std::string& text) {
  std::size_t common = 0, rare = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte < 0x80) continue;
    if (!IsLeadByte(text[at])) {
      if (byte >= 0xFD) return false;
      continue;
    }
    if (++at == text.size() || static_cast<unsigned char>(text[at]) < 0x40) return false;
    if (!IconvCodePage().IsPair(CodePage::LeadRow(byte), static_cast<unsigned char>(text[at]))) return false;
    ++(byte >= 0x99 ? rare : common);
  }
  return rare <= 2 * common;
}

TEST(ShiftJisTest, AgreesWithTheSlowRuleOnRandomTexts) {
  std::mt19937 random(11);
  static const char* const kPieces[] = {"\x82\xA0",
                                        "\x93\xFA",
                                        "\x83\x5C",
                                        "\x99\x41",
                                        "\xE0\x9F",
                                        "\xB1",
                                        "a",
                                        "plain text",
                                        "\r\n",
                                        "\x1A",
                                        "sixteen bytes and some more"};
  static const char* const kWrong[] = {"\x82", "\x81\x20", "\xFD", "\x80", "\xFC\xFC", "\xA0"};
  std::size_t passed = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (std::size_t pieces = random() % 30; pieces > 0; --pieces)
      text += kPieces[random() % std::size(kPieces)];
    if (random() % 3 == 0) text.insert(random() % (text.size() + 1), kWrong[random() % std::size(kWrong)]);
    const std::unique_ptr<char[]> exact(new char[text.size()]);
    std::copy(text.begin(), text.end(), exact.get());
    const bool expected = SlowLooksLikeShiftJis(text);
    ASSERT_EQ(LooksLikeShiftJis({exact.get(), text.size()}, IconvCodePage()), expected) << text;
    passed += expected ? 1 : 0;
  }
  EXPECT_GT(passed, 2000u);
  EXPECT_LT(passed, 18000u);
}

}  // namespace
}  // namespace wfinfo
