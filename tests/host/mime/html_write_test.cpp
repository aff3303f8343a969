// HTML that is made: of text, of quoted HTML; and the HTML of a mail.
#include <gtest/gtest.h>

#include "host/mime/html_text.h"
#include "host/mime/html_write.h"
#include "host/mime/sections.h"

namespace wrenfold {
namespace {

TEST(HtmlOfText, ReadsBackAsTheText) {
  for (const char16_t* text : {u"", u"a", u"a < b & \"c\"", u"  two blanks,  two  more\r\n  x",
                               u"\r\n\r\nx\r\n", u"\u65E5\u672C\xD83D\xDE00", u"<br>&nbsp;"}) {
    EXPECT_EQ(TextOfHtml(HtmlOfText(text)), text) << WideToUtf8(text);
  }
  EXPECT_EQ(HtmlOfText(u"a\r\r\nb\nc\rd"), u"a<br>\r\nb<br>\r\nc<br>\r\nd") << "any line end";
}

TEST(QuotedHtml, StandsInTheBody) {
  const std::u16string quoted = QuotedHtml(u"<html><BODY class=x>a</body>b</Body></html>");
  EXPECT_TRUE(quoted.starts_with(u"<html><BODY class=x><blockquote "));
  EXPECT_TRUE(quoted.ends_with(u">a</body>b</blockquote></Body></html>"));
  EXPECT_TRUE(QuotedHtml(u"a").ends_with(u">a</blockquote>"));
  EXPECT_TRUE(QuotedHtml(u"<body>a").ends_with(u">a</blockquote>")) << "an end that is missing";
  EXPECT_TRUE(QuotedHtml(u"<bodyguard>a").starts_with(u"<blockquote ")) << "another element";
  EXPECT_TRUE(QuotedHtml(u"<body").starts_with(u"<blockquote ")) << "a tag that does not end";
}

TEST(HtmlOfMail, IsTheFirstThatIsNotAttached) {
  const auto html = [](std::string_view raw) {
    const auto found = HtmlOfMail(SplitMessage(raw));
    return found ? WideToUtf8(*found) : "none";
  };
  EXPECT_EQ(html("Content-Type: text/html; charset=iso-8859-1\n\n<p>\xE9"), "<p>é");
  EXPECT_EQ(html("Content-Type: text/plain\n\n<p>"), "none");
  EXPECT_EQ(
      html("Content-Type: multipart/mixed; boundary=b\n\n--b\nContent-Type: text/html\nContent-Disposition: "
           "attachment\n\nA\n--b\nContent-Type: multipart/alternative; "
           "boundary=c\n\n--c\n\ntext\n--c\nContent-Type: "
           "text/html\n\nB\n--c--\n--b--\n"),
      "B");
}

TEST(CharsetOfShownText, IsThatOfTheTextThatShows) {
  const auto charset = [](std::string_view raw) { return CharsetOfShownText(SplitMessage(raw)); };
  EXPECT_EQ(charset("\nx"), "");
  EXPECT_EQ(charset("Content-Type: text/html; charset=Big5\n\nx"), "Big5");
  EXPECT_EQ(
      charset(
          "Content-Type: multipart/mixed; boundary=b\n\n--b\nContent-Type: text/html; "
          "charset=utf-8\n\nx\n--b\n"
          "Content-Type: text/plain; charset=iso-2022-jp\n\nx\n--b\nContent-Type: text/plain; charset=big5\n"
          "Content-Disposition: attachment\n\nx\n--b--\n"),
      "iso-2022-jp");
}

}  // namespace
}  // namespace wrenfold
