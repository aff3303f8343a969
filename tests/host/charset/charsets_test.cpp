#include <gtest/gtest.h>

#include <string>

#include "host/charset/charsets.h"
#include "host/charset/japanese.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

using namespace std::string_view_literals;

struct DecodeCase {
  std::string_view charset;
  std::string_view bytes;
  std::u16string_view expected;
  const char* why;
};

TEST(HostCharset, BytesOfEachCharsetAreDecoded) {
  const DecodeCase cases[] = {
      {"us-ascii", "abc~\\", u"abc~\\", "ASCII"},
      {"utf-8", "\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80", u"\u00E9\u65E5\U0001F600",
       "two, three and four bytes"},
      {"UTF-8", "a\xC0\xAF\xED\xA0\x80z", u"a\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDz",
       "overlong, surrogate: each byte"},
      {"utf8", "\xE6\x97", u"\uFFFD\uFFFD", "cut off"},
      {"utf-7", "Hi +ZeVnLIqe-!+-", u"Hi \u65E5\u672C\u8A9E!+", "base64 runs, an escaped plus"},
      {"utf-16le", "\xFF\xFE\xE5\x65\x41"sv, u"\u65E5\uFFFD", "byte order mark, odd byte"},
      {"utf-16", "\x65\xE5"sv, u"\u65E5", "big-endian without a mark"},
      {"iso-2022-jp", "\x1B$B7oL>\x1B(B a", u"\u4EF6\u540D a", "kanji and back"},
      {"ISO-2022-JP", "\x1B$B7oL>", u"\u4EF6\u540D", "without the return to ASCII"},
      {"iso-2022-jp", "\x1B$B7o\r\nL>", u"\u4EF6\r\nL>", "a line end returns to ASCII"},
      {"iso-2022-jp", "\x1B$B7", u"\uFFFD", "half a character"},
      {"iso-2022-jp", "\x1B$@7oL>\x1B(J\\~", u"\u4EF6\u540D\\~", "JIS C 6226, JIS Roman read as ASCII"},
      {"iso-2022-jp", "\x1B(I1@\x1B(B1",
       u"\uFF71\uFF80"
       u"1",
       "half-width katakana"},
      {"cp50221",
       "\x0E"
       "1\x0F"
       "1",
       u"\uFF71"
       u"1",
       "half-width katakana by shifting"},
      {"iso-2022-jp", "\x1B$B-!\x1B(B", u"\u2460", "NEC row 13: circled 1"},
      {"iso-2022-jp-1", "\x1B$(D0!\x1B(B", u"\u4E02", "JIS X 0212"},
      {"iso-2022-jp",
       "\x1B"
       "Zx",
       u"\u001BZx", "another escape sequence stays"},
      {"shift_jis", "\x8C\x8F\x96\xBC\xB1\\", u"\u4EF6\u540D\uFF71\\", "kanji, katakana, backslash"},
      {"windows-31j", "\x81\x60\x81\x7C\x87\x40\xFA\x40", u"\uFF5E\uFF0D\u2460\u2170",
       "as Windows maps them"},
      {"sjis", "\x81\r\n\x81", u"\uFFFD\r\n\uFFFD", "a damaged character leaves the line end"},
      {"cp932", "\x80\xA0\xFD", u"\u0080\uF8F0\uF8F1", "the free single bytes"},
      {"euc-jp",
       "\xB7\xEF\xCC\xBE\x8E\xB1\x8F\xB0\xA1"
       "a",
       u"\u4EF6\u540D\uFF71\u4E02"
       u"a",
       "three code sets"},
      {"euc-jp", "\xB7\n\xB7", u"\uFFFD\n\uFFFD", "damaged"},
      {"iso-8859-1", "\xE9\x80", u"\u00E9\u20AC", "read as Windows-1252"},
      {"iso-8859-15", "\xA4\xE9", u"\u20AC\u00E9", "the euro sign of Latin-9"},
      {"windows-1252", "\x93\x81\x94", u"\u201C\u0081\u201D", "quotes; a hole stays"},
      {"windows-1251", "\xCF\xF0", u"\u041F\u0440", "Cyrillic"},
      {"koi8-r", "\xF0\xD2", u"\u041F\u0440", "Cyrillic"},
      {"gb2312", "\xC4\xE3\xBA\xC3", u"\u4F60\u597D", "simplified Chinese"},
      {"gb18030", "\xC4\xE3", u"\u4F60", "simplified Chinese"},
      {"big5", "\xA7\x41\xA6\x6E", u"\u4F60\u597D", "traditional Chinese"},
      {"euc-kr", "\xC7\xD1\xB1\xDB", u"\uD55C\uAE00", "Hangul"},
      {"gb18030", "\x94\x39\xFC\x36", u"\U0001F600", "four bytes above U+FFFF"},
      {"hz-gb-2312", "a~{<:Ky~}~~b~\nc", u"a\u5DF1\u6240~bc", "pairs of seven bits"},
      {"iso-2022-kr",
       "\x1B$)Ca\x0EGQ1[\x0F"
       "b",
       u"a\uD55C\uAE00"
       u"b",
       "pairs of seven bits between shifts"},
      {"utf-16", "a\0b\0"sv, u"ab", "without a mark: Latin letters tell the order"},
      {"utf-16", "\x42\x30\x44\x30"sv, u"\u3042\u3044", "kana tell it too"},
      {"utf-16", "\xFF\xFE\x41\0\xFF\xFE\x42\0"sv, u"AB", "joined words have a mark each"},
      {"utf-32", "\x00\x00\x11\x00\x00"sv, u"\uFFFD\uFFFD", "no character, and an odd byte"},
      {"utf-32le", "\x00\xF6\x01\x00"sv, u"\U0001F600", "four bytes"},
      {"utf-32", "\0\0\xFE\xFF\0\0\0a"sv, u"a", "big-endian by its mark"},
      {"macintosh", "\x8E", u"\u00E9", "the Macintosh's Latin letters"},
      {"utf-8*en", "\xC3\xA9", u"\u00E9", "a language behind the name"},
      {"\"utf-8\" ", "\xC3\xA9", u"\u00E9", "quoted"},
      {"x-nobody-knows", "abc\xE9", u"abc\u00E9", "unknown: Windows-1252"},
      {"", "abc\xE9", u"abc\u00E9", "no name: Windows-1252"},
  };
  for (const DecodeCase& c : cases) {
    EXPECT_EQ(SystemCharsets().Decode(c.charset, c.bytes), c.expected) << c.charset << ": " << c.why;
  }
}

TEST(HostCharset, UndeclaredBytesAreGuessed) {
  const DecodeCase cases[] = {
      {"", "plain", u"plain", "7-bit"},
      {"", "\x1B$B7oL>\x1B(B", u"\u4EF6\u540D", "ISO-2022-JP by its escape sequences"},
      {"", "\xE6\x97\xA5", u"\u65E5", "valid UTF-8"},
      {"", "\x93\xFA", u"\u65E5", "else Shift-JIS"},
      {"euc-jp", "\xC6\xFC", u"\u65E5", "else what is declared"},
      {"us-ascii", "\x93\xFA", u"\u65E5", "a 7-bit charset cannot be meant"},
      {"utf-8", "\x93\xFA", u"\u65E5", "nothing in it is UTF-8"},
      {"utf-8", "\xC3\xA9 \xE9", u"\u00E9 \uFFFD", "declared: half of it may be broken"},
      {"", "\xE6\x97\xA5\xE6\x9C\xAC\x93", u"\u65E5\u672C\uFFFD", "likely UTF-8 with a broken byte"},
      {"iso-2022-jp", "\xE6\x97\xA5\xE6\x9C\xAC\x93", u"\u65E5\u672C\uFFFD", "the same"},
      {"iso-8859-1", "\xC3\xA9\xE9", u"\u00C3\u00A9\u00E9", "a charset that can hold it is believed"},
      {"iso-2022-jp", "\xC6\xFC\xCB\xDC\xB8\xEC", u"\u65E5\u672C\u8A9E", "declared Japanese, is EUC-JP"},
      {"iso-2022-jp", "\xA4\xA2", u"\u3042", "kana of EUC-JP"},
      {"iso-2022-jp", "\xC3\xBD\xC4", u"\uFF83\uFF7D\uFF84", "half-width katakana of Shift-JIS"},
      {"", "\xC6\xFC\xCB\xDC\xB8\xEC", u"\u65E5\u672C\u8A9E", "a run of EUC-JP"},
      {"", "\xC4\xE4", u"\u00C4\u00E4", "two accents are no Japanese"},
      {"",
       "cr\xE8me br\xFBl\xE9"
       "e",
       u"cr\u00E8me br\u00FBl\u00E9"
       u"e",
       "accents between letters: Windows-1252"},
      {"",
       "A\x82\xC6"
       "B",
       u"A\u3068"
       u"B",
       "kana between letters are no accents"},
      {"", "X\x90\xFC", u"X\u7DDA", "a byte that Windows-1252 leaves free"},
      {"", "don\x92t", u"don\u2019t", "an apostrophe too"},
      {"", "\x83\x5C\x83\x74\x83\x67 R\x83", u"\u30BD\u30D5\u30C8 R\uFFFD", "Shift-JIS with a broken byte"},
      {"unknown-8bit", "\x93\xFA", u"\u65E5", "a name that says nothing"},
      {"x-unknown", "\xE9t\xE9", u"\u00E9t\u00E9", "an unknown charset: Windows-1252"},
  };
  for (const DecodeCase& c : cases)
    EXPECT_EQ(SystemCharsets().Guess(c.charset, c.bytes), c.expected) << c.why;
}

// Windows has a page for GB18030, other systems that the host runs on do not.
class WithoutGb18030 final : public CodePageConverter {
 public:
  std::optional<std::u16string> ToWide(unsigned code_page, std::string_view bytes) const override {
    if (code_page == 54936) return std::nullopt;
    return SystemCodePages().ToWide(code_page, bytes);
  }
};

TEST(HostCharset, Gb18030IsReadWithoutItsPage) {
  const WithoutGb18030 pages;
  const Charsets charsets(pages);
  const DecodeCase cases[] = {
      {"", "a\xC4\xE3z", u"a\u4F60z", "two bytes"},
      {"", "\xC4\xE3\x94\x39\xFC\x36\xBA\xC3", u"\u4F60\U0001F600\u597D", "four bytes above U+FFFF"},
      {"", "\x90\x30\x81\x30\xE3\x32\x9A\x35", u"\U00010000\U0010FFFF", "the first and the last of them"},
      {"", "\xE3\x32\x9A\x36", u"\uFFFD", "behind the last"},
      {"", "x\x81\x30\x81\x30y", u"x\uFFFDy",
       "four bytes below: one character that needs the system's table"},
      {"", "\xC4", u"\uFFFD", "half a character"},
  };
  for (const DecodeCase& c : cases) EXPECT_EQ(charsets.Decode("gb18030", c.bytes), c.expected) << c.why;
}

TEST(HostCharset, BodiesAreDecodedAsDeclaredWhereTheBytesAllow) {
  const DecodeCase cases[] = {
      {"us-ascii", "\x1B$B7oL>\x1B(B", u"\u4EF6\u540D", "declared ASCII, is ISO-2022-JP"},
      {"us-ascii", "\xC3\xA9", u"\u00E9", "declared ASCII, is UTF-8"},
      {"iso-2022-jp", "\x93\xFA", u"\u65E5", "declared ISO-2022-JP, is Shift-JIS"},
      {"iso-2022-jp", "\x1B$B7oL>\x1B(B\xB1", u"\u4EF6\u540D\uFF71",
       "8-bit katakana beside escape sequences"},
      {"utf-7", "+ZeU-", u"\u65E5", "7-bit as declared"},
      {"utf-8", "a\xFF", u"a\uFFFD", "an 8-bit charset is believed"},
      {"shift_jis", "\xC3\xA9", u"\uFF83\uFF69", "also against valid UTF-8"},
  };
  for (const DecodeCase& c : cases)
    EXPECT_EQ(SystemCharsets().DecodeDeclared(c.charset, c.bytes), c.expected) << c.why;
}

struct HostCase {
  std::u16string_view wide;
  std::string_view host;
  const char* why;
};

TEST(HostCharset, HostTextEscapesWhatCodePage932CannotHold) {
  const HostCase cases[] = {
      {u"a~\\", "a~\\", "ASCII"},
      {u"\u4EF6\uFF71", "\x8C\x8F\xB1", "double-byte and katakana"},
      {u"\u2252\u2160\u2116\u7E8A\uFFE2", "\x81\xE0\x87\x54\x87\x82\xFA\x5C\x81\xCA",
       "duplicates as Windows writes them"},
      {u"\u00E9", "\x1A\xE9\x80\x85", "narrow, bit 7"},
      {u"\u00A5", "\x1A\xA5\x80\x85", "no best fit to a backslash"},
      {u"\u301C", "\x1A\x9C\xB0\x8C", "no best fit to a full-width tilde; full width"},
      {u"\uD55C", "\x1A\xDC\xD5\x8E", "Hangul: full width, bit 15"},
      {u"\U0001F600", "\x1A\xBD\xD8\x86\x1A\x80\xDE\x86", "outside the BMP: both surrogates"},
      {u"\x1A", "\x1A\x9A\x80\x84", "the escape byte itself"},
      {u"\xFFFD", "\x1A\xFD\xFF\x87", "the replacement character"},
  };
  for (const HostCase& c : cases) {
    EXPECT_EQ(SystemCharsets().ToHostText(c.wide), c.host) << c.why;
    EXPECT_EQ(SystemCharsets().FromHostText(c.host), c.wide) << c.why;
  }
}

TEST(HostCharset, EveryUnitComesBackFromHostText) {
  for (unsigned value = 0; value < 0x10000; ++value) {
    const std::u16string wide{static_cast<char16_t>(value), u'x'};
    const std::string host = SystemCharsets().ToHostText(wide);
    EXPECT_EQ(wfinfo::UnitLength(host), host.size() - 1) << value;
    EXPECT_EQ(SystemCharsets().FromHostText(host), wide) << value;
  }
}

TEST(HostCharset, DamagedHostTextIsStillRead) {
  const HostCase cases[] = {
      {u"\x1A\x31",
       "\x1A"
       "1",
       "a lone 0x1A stands for itself"},
      {u"\u00E9", "\x1A\xE9\x80\x05", "an escape with bit 7 of its last byte cleared"},
      {u"a\uFFFD", "a\x83", "a lead byte at the end"},
  };
  for (const HostCase& c : cases) EXPECT_EQ(SystemCharsets().FromHostText(c.host), c.wide) << c.why;
}

TEST(HostCharset, HostTextAndUtf8ConvertBothWays) {
  const std::string utf8 = "\xE4\xBB\xB6\xE5\x90\x8D caf\xC3\xA9 \xF0\x9F\x98\x80 \xED\x95\x9C";
  EXPECT_EQ(SystemCharsets().HostToUtf8(SystemCharsets().Utf8ToHost(utf8)), utf8);
  EXPECT_EQ(WideToUtf8(u"a\xD800z"), "a\xEF\xBF\xBDz") << "a lone surrogate";
}

TEST(HostCharset, RowsAndCellsBecomeShiftJisCodes) {
  const struct {
    unsigned row, cell, code;
  } cases[] = {
      {0x21, 0x21, 0x8140}, {0x21, 0x5F, 0x817E}, {0x21, 0x60, 0x8180},
      {0x22, 0x21, 0x819F}, {0x5E, 0x7E, 0x9FFC}, {0x5F, 0x21, 0xE040},
      {0x7E, 0x7E, 0xEFFC}, {0x20, 0x21, 0},      {0x21, 0x7F, 0},
  };
  for (const auto& c : cases) EXPECT_EQ(ShiftJisOfJis(c.row, c.cell), c.code) << c.row << ' ' << c.cell;
}

// A system without any page but its 932.
class FewPages final : public CodePageConverter {
 public:
  std::optional<std::u16string> ToWide(unsigned code_page, std::string_view bytes) const override {
    if (code_page != 932) return std::nullopt;
    return SystemCodePages().ToWide(code_page, bytes);
  }
};

TEST(HostCharset, AMissingCodePageNeverLosesAscii) {
  const FewPages pages;
  const Charsets charsets(pages);
  for (const char* name : {"big5", "koi8-r", "gb18030", "euc-jp", "iso-2022-jp"}) {
    EXPECT_EQ(charsets.Decode(name, "Plain ~ text\r\n"), u"Plain ~ text\r\n") << name;
  }
  EXPECT_EQ(charsets.Decode("euc-jp", "\xB7\xEF\x8F\xB0\xA1"), u"\u4EF6\uFFFD")
      << "only JIS X 0212 needs the page";
}

}  // namespace
}  // namespace wrenfold
