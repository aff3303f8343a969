// How the small host looks headers up.
#include <gtest/gtest.h>

#include <string>

#include "host/mail/headers.h"

namespace wrenfold {
namespace {

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
  EXPECT_EQ(HeaderValue("Subject: \x1A\x80\x80\x0D", "Subject"), "\x1A\x80\x80\x0D") << "no line end";
  EXPECT_EQ(HeaderValue("\x1A\x80\x80\x0Dx: a\r\n", "\x1A\x80\x80\x0Dx"), "a") << "in a name";
}

TEST(HeaderLookup, AValueUnfoldsToOneLine) {
  EXPECT_EQ(Unfolded("a\r\n b"), "a b");
  EXPECT_EQ(Unfolded("a\r\n\tb\tc"), "a b c") << "a tab is a blank";
  EXPECT_EQ(Unfolded(""), "");
  EXPECT_EQ(Unfolded("\x1A\x80\x80\x0D\r\n b"), "\x1A\x80\x80\x0D b") << "an escape may end in CR";
}

TEST(HeaderLookup, FindsWhereAHeaderStands) {
  const std::string text = "A: 1\r\n 2\r\nno name\r\nB: 3\r\na: 4\r\n\r\nA: 5\r\n";
  EXPECT_EQ(FieldAt(text, 0)->lines, "A: 1\r\n 2\r\n");
  EXPECT_FALSE(FieldAt(text, 10)->Is("")) << "a line without a colon has no name";
  EXPECT_EQ(FieldAt(text, 10)->Value(), "");
  EXPECT_EQ(FindField(text, "a:", 1)->lines, "a: 4\r\n");
  EXPECT_EQ(FindField(text, "a", 1)->at, 25u);
  EXPECT_FALSE(FindField(text, "A", 2)) << "behind the empty line";
  EXPECT_FALSE(FieldAt(text, 31)) << "the empty line";
  EXPECT_FALSE(FieldAt(text, text.size()));
}

TEST(HeaderLookup, SplitsAMailAtItsFirstEmptyLine) {
  const struct {
    const char* text;
    const char* headers;
    const char* empty_line;
    const char* body;
    const char* why;
  } cases[] = {
      {"A: 1\r\nB: 2\r\n\r\nbody\r\n\r\nmore", "A: 1\r\nB: 2\r\n", "\r\n", "body\r\n\r\nmore",
       "headers and body"},
      {"\r\nbody\r\n\r\nmore", "", "\r\n", "body\r\n\r\nmore", "no header"},
      {"A: 1\r\n", "A: 1\r\n", "", "", "no empty line"},
      {"A: 1\r\n\r\n", "A: 1\r\n", "\r\n", "", "no body"},
      {"", "", "", "", "nothing"},
  };
  for (const auto& c : cases) {
    const MailText split = SplitMail(c.text);
    EXPECT_EQ(split.headers, c.headers) << c.why;
    EXPECT_EQ(split.empty_line, c.empty_line) << c.why;
    EXPECT_EQ(split.body, c.body) << c.why;
  }
}

TEST(HeaderLookup, DisplaysTheHeadersOfAReader) {
  EXPECT_EQ(DisplayedHeaders("Date: d\r\nX: y\r\nSubject: s\r\n t\r\nTo: a\r\nFrom: f\r\nTo: b\r\n\r\n"),
            "From: f\r\nTo: a\r\nTo: b\r\nSubject: s\r\n t\r\nDate: d\r\n");
}

}  // namespace
}  // namespace wrenfold
