// How the small host shows, looks up, folds and quotes text.
#include <gtest/gtest.h>

#include <string>

#include "host/mail/headers.h"
#include "host/mail/quoting.h"
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

constexpr std::string_view kMail =
    "From: a@b\r\nReceived: one\r\nRECEIVED:\ttwo\r\n\tfolded\r\nSubject:\r\nNo colon\r\nSubject2: "
    "x\r\n\r\nFrom: body\r\n";

TEST(HeaderLookup, FindsValues) {
  EXPECT_EQ(HeaderValue(kMail, "from"), "a@b");
  EXPECT_EQ(HeaderValue(kMail, "From:"), "a@b") << "the colon may be given";
  EXPECT_EQ(HeaderValue(kMail, "received", 1), "two\r\n\tfolded");
  EXPECT_EQ(HeaderValue(kMail, "received", 2), std::nullopt);
  EXPECT_EQ(HeaderValue(kMail, "Subject"), "");
  EXPECT_EQ(HeaderValue(kMail, "Subject2"), "x") << "a longer name is another header";
  EXPECT_EQ(HeaderValue(kMail, "No colon"), std::nullopt);
  EXPECT_EQ(HeaderValue(kMail, ""), std::nullopt);
  EXPECT_EQ(HeaderValue("From: a", "From"), "a") << "no line end";
  EXPECT_EQ(HeaderValue("", "From"), std::nullopt);
}

TEST(HeaderLookup, CountsOnlyTheHeader) {
  EXPECT_EQ(CountHeaders(kMail, "From"), 1u);
  EXPECT_EQ(CountHeaders(kMail, "Received"), 2u);
  EXPECT_EQ(CountHeaders(kMail, "To"), 0u);
}

TEST(HeaderLookup, AnEscapeThatEndsInCrEndsNoLine) {
  const std::string text =
      "Subject: \x1A\x80\x80\x0D"
      "b\r\n\r\n";
  EXPECT_EQ(HeaderValue(text, "Subject"),
            "\x1A\x80\x80\x0D"
            "b");
}

TEST(HeaderLookup, DisplaysTheHeadersOfAReader) {
  EXPECT_EQ(DisplayedHeaders("Date: d\r\nX: y\r\nSubject: s\r\n t\r\nTo: a\r\nFrom: f\r\nTo: b\r\n\r\n"),
            "From: f\r\nTo: a\r\nTo: b\r\nSubject: s\r\n t\r\nDate: d\r\n");
}

TEST(Quoting, MarksEachLine) {
  struct Case {
    std::string_view text;
    std::string_view expected;
    const char* why;
  };
  const Case cases[] = {
      {"", "", "nothing"},
      {"a", "> a", "no line end is added"},
      {"a\r\nb\r\n", "> a\r\n> b\r\n", "two lines"},
      {"a\nb\rc", "> a\r\n> b\r\n> c", "every line end becomes CR LF"},
      {"\r\n\r\n", "> \r\n> \r\n", "empty lines"},
      {"a\r\r\nb", "> a\r\r\n> b", "the line end that forbids folding stays"},
      {"\x83\x0D\x0A", "> \x83\x0D\x0A", "a lead byte hides no line end"},
      {"\x1A\x80\x80\x0D"
       "b",
       "> \x1A\x80\x80\x0D"
       "b",
       "an escape that ends in CR"},
  };
  for (const Case& c : cases) EXPECT_EQ(FoldAndQuote(c.text, "> ", kNoFolding), c.expected) << c.why;
}

TEST(Quoting, FoldsAtAWidth) {
  struct Case {
    std::string_view text;
    std::size_t width;
    std::string_view expected;
    const char* why;
  };
  const Case cases[] = {
      {"abcdef", 6, "|abcdef", "fits"},
      {"abcdefg", 6, "|abcdef\r\n|g", "one too long"},
      {"ab cdef", 6, "|ab \r\n|cdef", "a word stays whole"},
      {"abcdef gh\r\n", 6, "|abcdef \r\n|gh\r\n", "the blank stays with the line before it"},
      {"\x82\xA0\x82\xA2\x82\xA4", 4, "|\x82\xA0\x82\xA2\r\n|\x82\xA4",
       "double-byte characters take two columns"},
      {"\x82\xA0\x82\xA2", 3, "|\x82\xA0\r\n|\x82\xA2", "no character is split"},
      {"\x82\xA0", 1, "|\x82\xA0", "at least one character a line"},
      {"ab\x1A\xA9\x80\x84"
       "c",
       3, "|ab\x1A\xA9\x80\x84\r\n|c", "a narrow escape takes one column"},
      {"ab\x1A\xA9\x80\x8C"
       "c",
       4, "|ab\x1A\xA9\x80\x8C\r\n|c", "a wide escape takes two"},
      {"abcdefg\r\r\nabcdefg\r\n", 6, "|abcdefg\r\r\n|abcdef\r\n|g\r\n", "a line may forbid its folding"},
  };
  for (const Case& c : cases) EXPECT_EQ(FoldAndQuote(c.text, "|", c.width), c.expected) << c.why;
}

}  // namespace
}  // namespace wrenfold
