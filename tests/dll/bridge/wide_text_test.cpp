// Conversion between host text and UTF-16 on the real system: the tables against its own per-character calls,
// and WIDETEXT itself.
#include "src/text/wide_text.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "src/bridge/results_win.h"
#include "src/bridge/system_code_page_win.h"
#include "src/bridge/wide_text_win.h"
#include "src/text/host_text.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo {
namespace {

std::u16string Wide(const std::string& host) {
  std::u16string wide(host.size(), u'#');
  wide.resize(HostToWide(host, wide.data(), SystemCodePage()));
  return wide;
}

std::string Host(const std::u16string& wide) {
  std::string host(4 * wide.size(), '#');
  host.resize(WideToHost(wide, host.data(), SystemCodePage()));
  return host;
}

// What the system makes of one character of `length` bytes.
std::u16string SystemWide(const char* bytes, int length) {
  wchar_t units[2];
  const int count = MultiByteToWideChar(932, 0, bytes, length, units, 2);
  if (count == 0) return u"?";
  std::u16string text;
  for (int i = 0; i < count; ++i) text += static_cast<char16_t>(units[i]);
  return text;
}

TEST(WideTextOnTheSystem, AllPairsConvertAsTheSystemConvertsThem) {
  for (unsigned pair = 0; pair <= 0xFFFF; ++pair) {
    const char bytes[2] = {static_cast<char>(pair >> 8), static_cast<char>(pair)};
    if (StartsWithEscape({bytes, 2})) continue;
    std::u16string expected;
    if (IsLeadByte(bytes[0]) && bytes[1] != '\0') {
      expected = SystemWide(bytes, 2);
    } else {
      for (int i = 0; i < 2; ++i) {
        const bool ascii = static_cast<unsigned char>(bytes[i]) <= 0x7F;
        expected += ascii ? std::u16string(1, static_cast<char16_t>(bytes[i])) : SystemWide(bytes + i, 1);
      }
    }
    ASSERT_EQ(Wide({bytes, 2}), expected) << std::hex << pair;
  }
}

TEST(WideTextOnTheSystem, AllUnitsConvertAsTheSystemConvertsThem) {
  for (unsigned value = 0; value <= 0xFFFF; ++value) {
    const auto unit = static_cast<char16_t>(value);
    const auto wide = static_cast<wchar_t>(value);
    std::string expected;
    if (value < 0x80 && value != 0x1A) {
      expected = std::string(1, static_cast<char>(value));
    } else {
      char bytes[4];
      BOOL lost = FALSE;
      const int count = WideCharToMultiByte(932, WC_NO_BEST_FIT_CHARS, &wide, 1, bytes, 4, nullptr, &lost);
      if (value == 0x1A || lost) {
        WriteEscape(bytes, unit);
        expected = std::string(bytes, 4);
      } else {
        expected = std::string(bytes, static_cast<std::size_t>(count));
      }
    }
    ASSERT_EQ(Host(std::u16string(1, unit)), expected) << std::hex << value;
  }
}

TEST(WideTextOnTheSystem, ValidPairsAreThoseThatTheSystemDoesNotRefuse) {
  for (unsigned pair = 0x8100; pair <= 0xFCFF; ++pair) {
    const char bytes[2] = {static_cast<char>(pair >> 8), static_cast<char>(pair)};
    if (!IsLeadByte(bytes[0])) continue;
    wchar_t units[2];
    const bool valid = MultiByteToWideChar(932, MB_ERR_INVALID_CHARS, bytes, 2, units, 2) > 0;
    const auto byte = [&bytes](int at) { return static_cast<unsigned char>(bytes[at]); };
    ASSERT_EQ(SystemCodePage().IsPair(CodePage::LeadRow(byte(0)), byte(1)), valid) << std::hex << pair;
  }
}

TEST(WideTextOnTheSystem, FillingTheTablesKeepsTheLastError) {
  SetLastError(4711);
  for (unsigned value = 0x80; value <= 0xFFFF; value += 0x80)
    SystemCodePage().Host(static_cast<char16_t>(value));
  for (unsigned lead = 0x81; lead <= 0x9F; ++lead)
    SystemCodePage().Pair(CodePage::LeadRow(static_cast<unsigned char>(lead)), 0x40);
  EXPECT_EQ(GetLastError(), 4711u);
}

TEST(WideTextObject, ValuesBelow64KStayWhatTheyAre) {
  EXPECT_EQ(WIDETEXT(nullptr).Text(), nullptr);
  const WIDETEXT atom(reinterpret_cast<const char*>(0xFFFF));
  EXPECT_EQ(atom.Text(), reinterpret_cast<const wchar_t*>(0xFFFF));
  EXPECT_EQ(atom.length, 0);
  EXPECT_EQ(atom.guard, 0xCCAACCAAu);
}

TEST(WideTextObject, UpTo126BytesUseTheInlineStorage) {
  const std::string longest(126, 'x');
  const WIDETEXT inside(longest.c_str());
  EXPECT_EQ(inside.text, inside.inline_text);
  EXPECT_EQ(inside.length, 126);
  EXPECT_EQ(std::wstring(inside.Text()), std::wstring(126, L'x'));
  const WIDETEXT outside((longest + 'x').c_str());
  EXPECT_NE(outside.text, outside.inline_text);
  EXPECT_EQ(outside.length, 127);
  EXPECT_EQ(std::wstring(outside.Text()), std::wstring(127, L'x'));
}

TEST(WideTextObject, BlocksAreMultiplesOf8192Bytes) {
  const struct {
    std::size_t length;  // of the host text; n is one more
    std::size_t size;
  } cases[] = {{127, 8192}, {4093, 8192}, {4094, 16384}, {8189, 16384}, {8190, 24576}};
  for (const auto& c : cases) {
    const std::string text(c.length, 'x');
    const WIDETEXT wide(text.c_str());
    EXPECT_EQ(LocalSize(wide.text), c.size) << c.length;
    EXPECT_EQ(std::wstring(wide.Text()), std::wstring(c.length, L'x'));
  }
}

TEST(WideTextObject, AnEscapedCharacterIsOneUnit) {
  const WIDETEXT wide("a\x1A\xA9\x80\x85\x93\xFAz");
  EXPECT_EQ(std::wstring(wide.Text()), L"a\u00A9\u65E5z");
  EXPECT_EQ(wide.length, 4);
}

TEST(WideTextObject, ALeadByteAtTheEndStandsAlone) {
  const char lead = '\x81';
  const WIDETEXT wide("a\x81");
  ASSERT_EQ(wide.length, 2);
  EXPECT_EQ(static_cast<char16_t>(wide.Text()[1]), SystemWide(&lead, 1)[0]);
  EXPECT_EQ(wide.Text()[2], L'\0');
}

TEST(WideTextObject, ADamagedGuardRaisesAnAlarmAndTheTextIsFreedAllTheSame) {
  wfinfo_test::BoxCloser closer;
  {
    WIDETEXT wide(std::string(200, 'x').c_str());
    wide.guard ^= 1;
    wide.Free();
    EXPECT_EQ(wide.text, nullptr);
    wide.guard ^= 1;
  }
  ASSERT_EQ(closer.boxes().size(), 1u);
  EXPECT_EQ(closer.boxes()[0].text, "Buffer overrun at WIDETEXT::Free()");
}

TEST(WideTextResult, ShortTextsGoToTheResultBuffer) {
  EXPECT_EQ(WideToResult(L"a\u00A9\u65E5", 4), 8u);
  EXPECT_STREQ(g_resultText, "a\x1A\xA9\x80\x85\x93\xFA");
  EXPECT_EQ(WideToResult(L"", 1), 1u);
  EXPECT_STREQ(g_resultText, "");
}

TEST(WideTextResult, LongTextsAreCutBetweenCharacters) {
  const std::wstring longest(2047, L'\u00A9');
  EXPECT_EQ(WideToResult(longest.c_str(), 2048), 4 * 2047 + 1u);
  EXPECT_EQ(WideToResult((longest + L'\u00A9').c_str(), 2049), 4 * 2047 + 1u)
      << "8192 bytes: one escape too many";
  EXPECT_EQ(WideToResult(std::wstring(8191, L'x').c_str(), 8192), 8192u);
  EXPECT_EQ(WideToResult(std::wstring(9000, L'x').c_str(), 9001), 8192u);
  EXPECT_EQ(std::string(g_resultText), std::string(8191, 'x'));
}

TEST(WideTextObject, KeepsTheLastErrorAndMayBeFreedTwice) {
  SetLastError(1234);
  {
    WIDETEXT wide(std::string(100000, '\x83').c_str());
    wide.Free();
    wide.Free();
  }
  EXPECT_EQ(GetLastError(), 1234u);
}

}  // namespace
}  // namespace wfinfo
