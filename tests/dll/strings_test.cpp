// The exports that cut, change, compare and judge texts.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/guarded_win.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

long long TextValue(const char* text) { return static_cast<long long>(reinterpret_cast<INT_PTR>(text)); }

TEST(Strings, CaseChangesAsciiLettersAlone) {
  EXPECT_EQ(ToUpper(Sjis(u8"aZソa").c_str()), Sjis(u8"AZソA"));
  EXPECT_EQ(ToLower(Sjis(u8"aZアA").c_str()), Sjis(u8"azアa"));
  const std::string large(9000, 'x');
  EXPECT_EQ(ToUpper(large.c_str()), std::string(9000, 'X')) << "a long result";
  EXPECT_EQ(ToLower(ToUpper(large.c_str())), large) << "its own earlier result";
  EXPECT_EQ(ToUpper(std::string(8191, 'x').c_str()), std::string(8191, 'X'));
}

TEST(Strings, OnlyToUpperReportsAnUnreadableText) {
  ScriptedHost host(Language::kEnglish);
  EXPECT_STREQ(ToUpper(nullptr), "");
  EXPECT_STREQ(ToUpper(kNumberForText), "");
  host.ExpectMessages({kStringMessageEnglish, kStringMessageEnglish});
  for (const char* text : {static_cast<const char*>(nullptr), kNumberForText}) {
    EXPECT_STREQ(ToLower(text), "");
    EXPECT_STREQ(LeftStr(text, 3), "");
    EXPECT_STREQ(RightStr(text, 3), "");
    EXPECT_STREQ(MidStr(text, 0, 3), "");
    EXPECT_STREQ(YenEncode(text), "");
    EXPECT_EQ(UnDoubleQuote(text), text);
    EXPECT_STREQ(ToBaseName(text), "");
  }
  host.ExpectMessages({});
}

// The check goes through a text page by page.
TEST(Strings, TextsMayEndWithTheirPageAndMustEndBeforeOneThatCannotBeRead) {
  ScriptedHost host(Language::kEnglish);
  for (const std::size_t size : {0u, 1u, 15u, 64u, 4095u, 4096u, 8191u, 8192u, 12287u, 12300u, 70000u}) {
    const std::string text(size, 'x');
    const Guarded guarded(text);
    EXPECT_EQ(ToUpper(guarded.get()), std::string(size, 'X')) << size;
    EXPECT_EQ(ToLower(guarded.get()), text) << size;
    guarded.get()[size] = 'x';
    EXPECT_STREQ(ToUpper(guarded.get()), "") << size;
    EXPECT_STREQ(ToLower(guarded.get()), "") << size;
    host.ExpectMessages({kStringMessageEnglish});
  }
}

TEST(Strings, PartsNeverHoldHalfACharacter) {
  const std::string text = Sjis(u8"aソb");
  EXPECT_STREQ(LeftStr(text.c_str(), 2), "a") << "one byte fewer";
  EXPECT_EQ(RightStr(text.c_str(), 2), Sjis(u8"ソb")) << "one byte more";
  EXPECT_EQ(MidStr(text.c_str(), 2, 1), Sjis(u8"ソ")) << "the start moves back";
  EXPECT_STREQ(MidStr("abcdefghijkl", 10, 5), "kl");
  EXPECT_STREQ(MidStr("abc", 3, 1), "");
  EXPECT_STREQ(MidStr("abc", -1, 1), "");
  EXPECT_STREQ(LeftStr("abc", -5), "");
  EXPECT_STREQ(RightStr("abc", -5), "");
  EXPECT_STREQ(LeftStr("abc", 65535), "abc");
  const std::string escape = "x\x1A\x80\x80\x0Dy";
  EXPECT_STREQ(LeftStr(escape.c_str(), 3), "x");
  EXPECT_EQ(RightStr(escape.c_str(), 2), escape.substr(1));
}

TEST(Strings, CountsMayBeTexts) {
  EXPECT_STREQ(LeftStr("abcdef", TextValue("3")), "abc");
  EXPECT_STREQ(RightStr("abcdef", TextValue("3")), "def");
  EXPECT_STREQ(MidStr("abcdef", TextValue("2"), TextValue("3")), "cde");
  for (const char* count : {"3x", "x", "", "-3", " 3"})
    EXPECT_STREQ(LeftStr("abcdef", TextValue(count)), "") << count;
  EXPECT_STREQ(LeftStr("abcdef", TextValue("99999999999")), "abcdef");
  EXPECT_STREQ(LeftStr("abcdef", 65536), "") << "an address that cannot be read";
  EXPECT_STREQ(LeftStr("abcdef", -65536), "");
  const std::string digits(200, '1');
  EXPECT_STREQ(LeftStr("abcdef", TextValue(digits.c_str())), "abcdef");
}

TEST(Strings, PartsAreKeptLongResults) {
  const char* const left = LeftStr("abcdef", 3);
  EXPECT_STREQ(ToUpper("x"), "X");
  EXPECT_STREQ(left, "abc") << "not in the short-result buffer";
  EXPECT_STREQ(LeftStr(left, 2), "ab") << "its own earlier result";
  EXPECT_STREQ(RightStr(LeftStr("abcdef", 4), 2), "cd");
}

TEST(Strings, QuotesAndBackslashesAreEscaped) {
  EXPECT_STREQ(YenEncode("a\"b\\"), "a\\\"b\\\\");
  EXPECT_EQ(YenEncode(Sjis(u8"ソ").c_str()), Sjis(u8"ソ"));
  EXPECT_STREQ(YenEncode(YenEncode("\"")), "\\\\\\\"") << "its own earlier result";
  EXPECT_EQ(YenEncode(std::string(9000, 'a').c_str()), std::string(8190, 'a'));
  const std::string end = std::string(8189, 'a') + "\x1A\x80\x80\x84";
  EXPECT_EQ(YenEncode((end + "b").c_str()), end) << "a whole escape behind 8189 bytes";
}

TEST(Strings, QuotesAreTakenOff) {
  EXPECT_STREQ(UnDoubleQuote("\"a b\""), "a b");
  for (const char* text : {"\"\"", "\"", "a\"", "\"a", "", "\"a\x81\""})
    EXPECT_EQ(UnDoubleQuote(text), text) << text;
  const std::string fits = "\"" + std::string(8189, 'a') + "\"", large = "\"" + std::string(8190, 'a') + "\"";
  EXPECT_EQ(UnDoubleQuote(fits.c_str()), std::string(8189, 'a'));
  EXPECT_EQ(UnDoubleQuote(large.c_str()), large.c_str());
  EXPECT_STREQ(UnDoubleQuote(UnDoubleQuote("\"\"a\"\"")), "a");
}

TEST(Strings, BaseNamesAreCutAtACharacter) {
  EXPECT_STREQ(ToBaseName("C:\\a\\b.txt"), "b.txt");
  EXPECT_EQ(ToBaseName(Sjis(u8"C:\\表").c_str()), Sjis(u8"表"));
  EXPECT_STREQ(ToBaseName(ToBaseName("a\\b\\c")), "c");
  EXPECT_EQ(ToBaseName(std::string(8190, 'n').c_str()), std::string(8190, 'n'));
  EXPECT_EQ(ToBaseName(std::string(8191, 'n').c_str()), std::string(8190, 'n'));
  EXPECT_EQ(ToBaseName((std::string(8189, 'n') + "\x83\x41").c_str()), std::string(8189, 'n'));
}

TEST(Strings, ValuesAreChosen) {
  ScriptedHost host(Language::kEnglish);
  const char* const yes = "yes";
  EXPECT_EQ(IfEqual("a", "a", TextValue(yes), 2), TextValue(yes));
  EXPECT_EQ(IfEqual("a", "A", 1, -2), -2);
  EXPECT_EQ(IfEqual("a", "a", 0x123456789ABCDEF0, 2), 0x123456789ABCDEF0);
  EXPECT_EQ(IfInclude("abc", "bc", 1, 2), 1);
  EXPECT_EQ(IfInclude("abc", "x", 1, 2), 2);
  EXPECT_EQ(IfInclude("abc", "", 1, 2), 1);
  EXPECT_EQ(IfInclude(Sjis(u8"ソ").c_str(), "\\", 1, 2), 2);
  EXPECT_EQ(IfInclude(Sjis(u8"ソ\\").c_str(), "\\", 1, 2), 1);
  host.ExpectMessages({});
  EXPECT_EQ(IfEqual(kNumberForText, "a", 1, 2), 0);
  EXPECT_EQ(IfEqual("a", nullptr, 1, 2), 0);
  EXPECT_EQ(IfInclude(nullptr, "a", 1, 2), 0);
  EXPECT_EQ(IfInclude("a", kNumberForText, 1, 2), 0);
  host.ExpectMessages(std::vector<std::string>(4, kStringMessageEnglish));
}

TEST(Strings, RandomnessIsJudged) {
  ScriptedHost host(Language::kEnglish);
  EXPECT_EQ(CheckRandomString("xkqzvbnm"), 1);
  EXPECT_EQ(CheckRandomString("internet"), 0);
  EXPECT_EQ(CheckRandomString("QWRTZ"), 1);
  EXPECT_EQ(CheckRandomDomain("xkqzvbnm.com"), 1);
  EXPECT_EQ(CheckRandomDomain("internet.xkqzvbnm"), 0);
  EXPECT_EQ(CheckRandomDomain("abcd.com"), 0);
  host.ExpectMessages({});
  EXPECT_EQ(CheckRandomString(nullptr), 0);
  EXPECT_EQ(CheckRandomDomain(kNumberForText), 0);
  host.ExpectMessages({kStringMessageEnglish, kStringMessageEnglish});
}

}  // namespace
}  // namespace wfinfo_test
