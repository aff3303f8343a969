// What the small host shows of HTML mails.
#include "host/mime/html_text.h"

#include <gtest/gtest.h>

#include <string>

namespace wrenfold {
namespace {

TEST(HtmlText, ShowsWhatABrowserShows) {
  const struct {
    std::u16string_view html;
    std::u16string_view text;
    const char* why;
  } cases[] = {
      {u"", u"", "nothing"},
      {u"plain", u"plain", "no element"},
      {u"caf&eacute; &rarr; &Omega;&#233;&#xE9;&#x1F600;", u"caf\u00E9 \u2192 \u03A9\u00E9\u00E9\U0001F600",
       "entities by name and number"},
      {u"a &lt; b &amp;&amp; c&nosuch; &amp;lt", u"a < b && c&nosuch; &lt", "unknown ones stay"},
      {u"&#150;&#146;&#x80;", u"\u2013\u2019\u20AC", "numbers that mean Windows-1252"},
      {u"a<input value=\"a>b\">c", u"ac", "a > in an attribute"},
      {u"a<?php echo 1; ?>b<!-- c --><![if x]>d<![endif]>e", u"abde", "instructions and comments"},
      {u"<script>if (a<b) 1</script>x<style>p{}</style>y<title>t</title>z", u"xyz", "what is not shown"},
      {u"<html><head><title>t</title></head><body>x</body></html>", u"x", "a whole document"},
      {u"a<br>b<br/><br>c", u"a\r\nb\r\n\r\nc", "line ends"},
      {u"<p>a</p>\n<p>b</p><div>c<div>d</div></div>e", u"a\r\nb\r\nc\r\nd\r\ne", "blocks stand on lines"},
      {u"<p>a<p>b", u"a\r\nb\r\n", "end tags left out"},
      {u"<table><tr><td>a</td><td>b</td></tr><tr><th>c<th>d</table>", u"a b\r\nc d\r\n", "cells"},
      {u" a \r\n\t b  <b> c</b>", u"a b c", "blanks are joined"},
      {u"<pre>\na  b\n c</pre>d  e", u"a  b\n c\r\nd e", "but not in <pre>"},
      {u"a&nbsp;&nbsp;b \u00A0c\u202F1", u"a  b  c 1", "no-break spaces are blanks that stay"},
      {u"a&shy;b\u200Bc&zwnj;d\uFEFF&#847;e&NoBreak;", u"abc\u200Cde", "soft hyphens and the widthless"},
      {u"a < b <3 >", u"a < b <3 >", "a < that begins no tag"},
      {std::u16string_view(u"a\0b", 3), u"a b", "a zero"},
      {std::u16string_view(u"a\xD800z", 3), u"a\uFFFDz", "half a character"},
      {u"<b><i>a</b>b</i>c", u"abc", "elements that overlap"},
      {u"a</p>b", u"a\r\nb", "an end without its begin"},
      {u"a<b", u"a", "cut inside a tag"},
      {u"a&eacut", u"a&eacut", "cut inside an entity"},
  };
  for (const auto& c : cases) EXPECT_EQ(TextOfHtml(c.html), c.text) << c.why;
}

std::u16string Repeated(std::u16string_view text, int times) {
  std::u16string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

constexpr std::u16string_view kUnreadable =
    u"[This HTML text cannot be shown: it is nested too deeply or too large.]";

TEST(HtmlText, DeepHtmlIsReadAndDeeperSaysSo) {
  const std::u16string html = Repeated(u"<div>", 3000) + u"deep";
  EXPECT_EQ(TextOfHtml(html), u"deep\r\n");
  HtmlLimits limits;
  limits.depth = 2000;
  EXPECT_EQ(TextOfHtml(html, limits), kUnreadable);
}

TEST(HtmlText, LongHtmlIsCutAtACharacterAndSaysSo) {
  HtmlLimits limits;
  limits.html_bytes = 10;
  EXPECT_EQ(TextOfHtml(u"1234567\u65E5", limits), u"1234567\u65E5") << "as long as may be";
  EXPECT_EQ(TextOfHtml(u"12345678\u65E5", limits),
            u"12345678\r\n[The rest of this HTML text is left out: it is too long.]");
}

// Each paragraph repeats all the elements that were open in the one before it.
TEST(HtmlText, HtmlThatGrowsToItsSquareSaysSo) {
  std::u16string html = u"<p>";
  for (unsigned c = 0; c < 2000; ++c) {
    html += u"<b a=" + std::u16string(1, static_cast<char16_t>(0x4E00 + c)) + u">";
  }
  html += Repeated(u"<p>x", 2000);
  HtmlLimits limits;
  limits.memory_bytes = 16u << 20;
  EXPECT_EQ(TextOfHtml(html, limits), kUnreadable);
  EXPECT_EQ(TextOfHtml(u"x", limits), u"x") << "and the next one is read";
}

}  // namespace
}  // namespace wrenfold
