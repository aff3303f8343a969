// How the small host shows text.
#include <gtest/gtest.h>

#include "host/terminal/terminal_text.h"

namespace wrenfold {
namespace {

using namespace std::string_view_literals;

TEST(TerminalText, ControlCharactersCannotReachTheTerminal) {
  struct Case {
    std::string_view text;
    std::string_view expected;
    const char* why;
  };
  const Case cases[] = {
      {""sv, ""sv, "nothing"},
      {"a\r\nb\nc\td"sv, "a\nb\nc\td"sv, "line ends and tabs stay"},
      {"a\rb"sv, "a\\rb"sv, "a CR alone would hide what stands before it"},
      {"a\r\r\nb"sv, "a\\r\nb"sv, "the line end that forbids folding"},
      {"\x1B[2J"sv, "\\x1B[2J"sv, "a terminal command"},
      {"\0\x7F"sv, "\\x00\\x7F"sv, "zero and delete"},
      {"\xC2\x9B\x32J"sv, "\\x9B2J"sv, "the same command in two bytes"},
      {"\xC2\xA0\xC3\x9B\xE3\x81\x82"sv, "\xC2\xA0\xC3\x9B\xE3\x81\x82"sv, "letters that hold such bytes"},
      {"\xC2"sv, "\xC2"sv, "half a character at the end"},
      {"\x9B\x32J\x80"sv, "\\x9B2J\\x80"sv, "bytes that a terminal of one byte for each character obeys"},
      {"\xF0\x9F\x98\x80\x9B"sv, "\xF0\x9F\x98\x80\\x9B"sv, "one behind a whole character"},
      {"\xE3\x9B"
       "a\xE3\x81\x9B"sv,
       "\xE3\x9B"
       "a\xE3\x81\x9B"sv,
       "as a part of one it means nothing by itself"},
  };
  for (const Case& c : cases) EXPECT_EQ(Printable(c.text), c.expected) << c.why;
}

TEST(TerminalText, QuotesOnOneLine) {
  EXPECT_EQ(Quoted("a\"b\\c\r\n\t\x1B", 60), "\"a\\\"b\\\\c\\r\\n\\t\\x1B\"");
  EXPECT_EQ(Quoted("abc", 3), "\"abc\"");
  EXPECT_EQ(Quoted("abcd", 3), "\"abc\"...");
  EXPECT_EQ(Quoted("\xE3\x81\x82\xE3\x81\x84\xE3\x81\x86", 2), "\"\xE3\x81\x82\xE3\x81\x84\"...")
      << "cut by characters";
}

TEST(TerminalText, IsPutOnOneLine) {
  const struct {
    std::string_view text;
    std::string_view expected;
    const char* why;
  } cases[] = {
      {"no folder", "no folder", "nothing to do"},
      {"a\r\nb\tc", "a\\r\\nb\\tc", "line ends and tabs"},
      {"\x1B[2J\xC2\x9B", "\\x1B[2J\\x9B", "terminal commands"},
      {"\"\\", "\"\\", "quotes and backslashes stay"},
      {"0123456789", "0123456789", "as long as may be"},
      {"0123456789a", "0123456789...", "too long"},
      {"012345678\xE3\x81\x82\xE3\x81\x84", "012345678\xE3\x81\x82...", "cut by characters"},
      {"", "", "nothing"},
  };
  for (const auto& c : cases) EXPECT_EQ(OnOneLine(c.text, 10), c.expected) << c.why;
}

}  // namespace
}  // namespace wrenfold
