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
}

TEST(HeaderLookup, DisplaysTheHeadersOfAReader) {
  EXPECT_EQ(DisplayedHeaders("Date: d\r\nX: y\r\nSubject: s\r\n t\r\nTo: a\r\nFrom: f\r\nTo: b\r\n\r\n"),
            "From: f\r\nTo: a\r\nTo: b\r\nSubject: s\r\n t\r\nDate: d\r\n");
}

}  // namespace
}  // namespace wrenfold
