#include <gtest/gtest.h>

#include <string>

#include "host/mime/header_words.h"
#include "host/mime/message.h"
#include "host/mime/parameters.h"
#include "host/mime/parts.h"
#include "host/mime/transfer_encoding.h"

namespace wrenfold {
namespace {

using namespace std::string_view_literals;

std::string Utf8(std::string_view host) { return SystemCharsets().HostToUtf8(host); }

struct HeaderCase {
  std::string_view value;
  bool is_address_list;
  std::u16string_view expected;
  const char* why;
};

TEST(HostMime, HeaderValuesAreDecoded) {
  const HeaderCase cases[] = {
      {" plain", false, u" plain", "nothing to decode"},
      {" a\r\n b\n\tc", false, u" a\r\n b\r\n\tc", "folds stay, with CR LF"},
      {"=?utf-8?B?5pel?=", false, u"\u65E5", "B"},
      {"=?UTF-8?q?=E6=97=A5_a?=", false, u"\u65E5 a", "Q, small letter, underscore"},
      {"=?iso-2022-jp?B?GyRCN28bKEI=?=\r\n =?iso-2022-jp?B?GyRCTD4bKEI=?=", false, u"\u4EF6\u540D",
       "two words over a fold are one text"},
      {"=?utf-8?B?5pc=?= \r\n =?UTF-8?Q?=A5?=", false, u"\u65E5", "a character split over a B and a Q word"},
      {"=?utf-8?B?5pc=?= x =?utf-8?Q?=A5?=", false, u"\uFFFD\uFFFD x \uFFFD",
       "text between keeps them apart"},
      {"=?utf-8?Q?a?==?utf-8?Q?b?=", false, u"ab", "words that touch"},
      {"=?utf-8?Q?a?= =?us-ascii?Q?b?=", false, u"ab", "two charsets"},
      {"=?utf-8?Q?a?= b\r\n =?utf-8?Q?c?=", false, u"a b\r\n c", "blanks beside plain text stay"},
      {"=?utf-8?Q?two words?=", false, u"two words", "a blank inside is tolerated"},
      {"=?utf-8?Q?why?"
       "?=",
       false, u"why?", "a question mark inside is tolerated"},
      {"=?utf-8*en?Q?a?=", false, u"a", "with a language"},
      {"=?utf-8?B?!!5pel?=", false, u"\u65E5", "broken base64"},
      {"=?utf-8?Q?=ZZ?=", false, u"=ZZ", "broken Q"},
      {"=?utf-8?X?a?=", false, u"=?utf-8?X?a?=", "an unknown encoding"},
      {"=?utf-8?B?5pel", false, u"=?utf-8?B?5pel", "no end"},
      {"=?"
       "?Q?a?=",
       false,
       u"=?"
       u"?Q?a?=",
       "no charset"},
      {"=?utf-8?Q?"
       "?=",
       false, u"", "an empty word"},
      {"=?utf-8?Q?a=0D=0ABcc:_b=00c?=", false, u"a  Bcc: b c", "line ends and zeros become blanks"},
      {"\xE6\x97\xA5", false, u"\u65E5", "raw UTF-8"},
      {"\x93\xFA", false, u"\u65E5", "raw Shift-JIS"},
      {"\x1B$B7oL>\x1B(B", false, u"\u4EF6\u540D", "raw ISO-2022-JP"},
      {"=?utf-8?Q?Doe,_J.?= <a@example.com>", true, u"\"Doe, J.\" <a@example.com>", "a comma in a name"},
      {"=?utf-8?Q?Doe,_J.?=", false, u"Doe, J.", "no address: no quotes"},
      {"=?utf-8?Q?J_Doe?= <a@example.com>", true, u"J Doe <a@example.com>", "nothing special"},
      {"=?utf-8?Q?=22A=22?= <a@example.com>", true, u"\"\\\"A\\\"\" <a@example.com>", "quotes in a name"},
      {"\"=?utf-8?Q?A,=22?=\" <a@example.com>", true, u"\"A,\\\"\" <a@example.com>", "inside quotes already"},
      {"a@example.com (=?utf-8?Q?A,_(b?=)", true, u"a@example.com (A, \\(b)", "inside a comment"},
  };
  for (const HeaderCase& c : cases) {
    EXPECT_EQ(DecodeHeaderValue(c.value, "", c.is_address_list, SystemCharsets()), c.expected) << c.why;
  }
}

TEST(HostMime, RawHeadersUseTheDeclaredCharset) {
  EXPECT_EQ(DecodeHeaderValue("\xC6\xFC", "euc-jp", false, SystemCharsets()), u"\u65E5");
}

TEST(HostMime, RawHeadersUseTheCharsetOfTheParts) {
  const struct {
    const char* subject;
    const char* first;   // charset of the first part
    const char* second;  // and of the second
    const char* expected;
    const char* why;
  } cases[] = {
      {"caf\xE9 cr\xE8me", "iso-8859-1", "", "caf\u00E9 cr\u00E8me", "the first part's"},
      {"\xCF\xF0\xE8\xE2\xE5\xF2", "utf-8", "windows-1251", "\u041F\u0440\u0438\u0432\u0435\u0442",
       "of the parts the one that is of eight bits"},
      {"\xC3\xA9t\xC3\xA9", "iso-8859-1", "", "\u00E9t\u00E9", "UTF-8 is seen before"},
      {"\xC3\xA9t\xC3\xA9 \xFF", "utf-8", "", "\u00E9t\u00E9 \uFFFD", "UTF-8 with a broken byte"},
      {"caf\xE9 cr\xE8me", "", "", "caf\u00E9 cr\u00E8me", "no charset at all: the likely one"},
      {"\x93\xFA\x96\x7B", "us-ascii", "", "\u65E5\u672C", "the likely one"},
  };
  for (const auto& c : cases) {
    const std::string raw =
        "Subject: " + std::string(c.subject) +
        "\nContent-Type: multipart/mixed; boundary=b\n\n--b\nContent-Type: text/plain; charset=" + c.first +
        "\n\nx\n--b\nContent-Type: text/html; charset=" + c.second + "\n\ny\n--b--\n";
    const std::string text = Utf8(MakeHostMessage(raw).text);
    EXPECT_EQ(text.substr(0, text.find("\r\n")), "Subject: " + std::string(c.expected)) << c.why;
  }
}

TEST(HostMime, AHeaderLineFullOfUnfinishedWordsIsReadOnce) {
  std::string value;
  for (int i = 0; i < 200000; ++i) value += "=?a?b? ";
  EXPECT_EQ(DecodeHeaderValue(value, "", false, SystemCharsets()).size(), value.size());
}

struct ParameterCase {
  std::string_view text;
  std::string_view value;
  std::string_view name;
  std::u16string_view expected;  // "(none)" for no such parameter
  const char* why;
};

TEST(HostMime, ParametersAreResolved) {
  const ParameterCase cases[] = {
      {" Text/Plain; charset=UTF-8", "text/plain", "charset", u"UTF-8", "a token"},
      {"text/plain;\r\n\tcharset=\"utf-8\" ; x=y", "text/plain", "charset", u"utf-8", "folded, quoted"},
      {"text/plain (a; comment); (b) charset (c) = (d) utf-8", "text/plain", "charset", u"utf-8", "comments"},
      {"a/b; name=\"a;b\\\"c\"", "a/b", "name", u"a;b\"c", "a semicolon and a quote inside quotes"},
      {"a/b; name=\"C:\\x\\y.txt\"", "a/b", "name", u"C:\\x\\y.txt", "a backslash that escapes nothing"},
      {"a/b; name=\"\x95\x5C.txt\"", "a/b", "name", u"\u8868.txt", "raw Shift-JIS with a second byte 0x5C"},
      {"a/b; name=\"=?utf-8?B?5pel?=.txt\"", "a/b", "name", u"\u65E5.txt", "an encoded word"},
      {"a/b; name*=utf-8''%e6%97%a5.txt", "a/b", "name", u"\u65E5.txt", "encoded"},
      {"a/b; name*=iso-2022-jp'ja'%1B$B7oL%3E%1B%28B", "a/b", "name", u"\u4EF6\u540D",
       "charset and language"},
      {"a/b; name*0*=utf-8''%e6%97; name*1*=%a5; name*2=\".t%20\"", "a/b", "name", u"\u65E5.t%20",
       "continued inside a character; the last piece is not encoded"},
      {"a/b; name*1=b; name*0=a; name*3=d", "a/b", "name", u"ab", "any order; a gap ends it"},
      {"a/b; name=old; name*=utf-8''%e6%97%a5", "a/b", "name", u"\u65E5", "the encoded form wins"},
      {"a/b; name*=utf-8''%e6%zz%4", "a/b", "name", u"\uFFFD%zz%4", "broken percent signs stay"},
      {"a/b; name=first; NAME=second", "a/b", "name", u"first", "the first of two"},
      {"a/b; name", "a/b", "name", u"(none)", "no value"},
      {"a/b; name=\"open", "a/b", "name", u"open", "no closing quote"},
      {"a/b; (open", "a/b", "name", u"(none)", "no closing parenthesis"},
      {"", "", "name", u"(none)", "nothing"},
  };
  for (const ParameterCase& c : cases) {
    const ParameterizedValue parsed = ParseParameters(c.text, SystemCharsets());
    const std::u16string* found = FindParameter(parsed, c.name);
    EXPECT_EQ(parsed.value, c.value) << c.why;
    EXPECT_EQ(found == nullptr ? u"(none)" : *found, c.expected) << c.why;
  }
}

struct TransferCase {
  std::string_view encoding;
  std::string_view text;
  std::string_view expected;
  const char* why;
};

TEST(HostMime, TransferEncodingsAreUndone) {
  const TransferCase cases[] = {
      {"base64", "aGVs\r\nbG8=", "hello", "over two lines"},
      {" BASE64 ", "aGVsbG8", "hello", "no padding"},
      {"base64", "aG!Vs*bG8=", "hello", "foreign characters"},
      {"base64", "aGVsbG8=\r\n-- \r\nlist footer", "hello", "text behind the padding"},
      {"base64", "a", "", "not one byte"},
      {"quoted-printable", "a=3D=e9=\r\nb= \t\nc",
       "a=\xE9"
       "bc",
       "hexadecimal, soft breaks"},
      {"quoted-printable", "=Z =3 =", "=Z =3 ", "broken ones stay; one at the end is a soft break"},
      {"quoted-printable", "a_b", "a_b", "an underscore is itself"},
      {"8bit", "a=3D", "a=3D", "nothing to undo"},
      {"x-unknown", "a=3D", "a=3D", "nothing known to undo"},
  };
  for (const TransferCase& c : cases) EXPECT_EQ(DecodeTransfer(c.encoding, c.text), c.expected) << c.why;
}

struct SplitCase {
  std::string_view body;
  std::vector<std::string_view> parts;
  const char* why;
};

TEST(HostMime, MultipartsAreSplitAtTheirBoundary) {
  const SplitCase cases[] = {
      {"pre\r\n--b\r\n1\r\n--b\r\n2\r\n--b--\r\nepi", {"1", "2"}, "preamble and epilogue are dropped"},
      {"--b\n1\n\n--b  \n2\n--b--",
       {"1\n", "2"},
       "LF; blanks behind the boundary; one line end is the delimiter's"},
      {"--b\r\n1\r\n--b\r\n2", {"1", "2"}, "no end boundary"},
      {"--b\r\n1\r\n--bc\r\n2\r\n--b--", {"1\r\n--bc\r\n2"}, "another boundary that begins alike"},
      {"--b\r\n--b\r\n--b--", {"", ""}, "empty parts"},
      {"no delimiter", {}, "none"},
      {"--b--\r\n", {}, "only an end"},
  };
  for (const SplitCase& c : cases) EXPECT_EQ(SplitMultipart(c.body, "b"), c.parts) << c.why;
}

struct MessageCase {
  std::string_view raw;
  std::string_view text;
  const char* why;
};

TEST(HostMime, MessagesBecomeHostText) {
  const MessageCase cases[] = {
      {"", "\r\n", "nothing: an empty header and an empty body"},
      {"A: b\n\nc\rd\r\ne\n\r", "A: b\r\n\r\nc\r\nd\r\ne\r\n\r\n", "all line ends become CR LF"},
      {"A: b", "A: b\r\n\r\n", "no empty line: all header"},
      {"\r\nbody", "\r\nbody", "no header"},
      {"just text\nsecond line\n", "\r\njust text\r\nsecond line\r\n", "no header line: all is body"},
      {"Dear Bob,\n\nhello", "\r\nDear Bob,\r\n\r\nhello", "the first line is kept"},
      {"Dear Bob: hello\nNote: x\n", "\r\nDear Bob: hello\r\nNote: x\r\n", "a name has no blank"},
      {" folded\nTo: a\n\nb", " folded\r\nTo: a\r\n\r\nb", "a stray continuation in front of the header"},
      {">From x\nTo: a\n\nb", ">From x\r\nTo: a\r\n\r\nb", "the \"From \" line of an mbox in front of it"},
      {"To: a\nno colon\nCc: c\n\nb", "To: a\r\nno colon\r\nCc: c\r\n\r\nb", "a broken line further down"},
      {" a\r\nB: c\r\n\r\n", " a\r\nB: c\r\n\r\n", "begins with a continuation"},
      {"A: b\r\n \r\nC: d\r\n\r\ne", "A: b\r\n \r\nC: d\r\n\r\ne",
       "a blank line is a continuation, not the end"},
      {"To: a\r\n\x1B(B\r\nA: b\r\n\r\n", "To: a\r\n?\r\nA: b\r\n\r\n",
       "a line that decodes to nothing does not end the header"},
      {"A: b\r\n\0c\r\n\r\n"sv, "A: b\r\n? c\r\n\r\n", "a line that begins with a zero is no continuation"},
      {"To: a\r\nA\xE9\x01: b\r\n\r\n", "To: a\r\nA??: b\r\n\r\n", "a header name is ASCII"},
      {"A: b\0c\r\n\r\nd\0e"sv, "A: b c\r\n\r\nd e", "zero bytes become blanks"},
      {"A: \x1A\r\n\r\n\x1A", "A: \x1A\x9A\x80\x84\r\n\r\n\x1A\x9A\x80\x84", "0x1A is escaped"},
      {"Content-Type: text/plain; charset=utf-8\n\n\xC3\xA9",
       "Content-Type: text/plain; charset=utf-8\r\n\r\n\x1A\xE9\x80\x85",
       "what code page 932 lacks is escaped"},
      {"Content-Transfer-Encoding: base64\n\n5pel", "Content-Transfer-Encoding: base64\r\n\r\n\x93\xFA",
       "no charset: guessed"},
      {"Content-Type: multipart/mixed; boundary=b\n\ntext",
       "Content-Type: multipart/mixed; boundary=b\r\n\r\ntext", "a multipart without its boundary is text"},
      {"Content-Type: image/png\n\nxx", "Content-Type: image/png\r\n\r\n", "no text at all"},
  };
  for (const MessageCase& c : cases) {
    const HostMessage message = MakeHostMessage(c.raw);
    EXPECT_EQ(message.text, c.text) << c.why;
  }
}

struct BodyCase {
  const char* parts;  // of a multipart of type `type`, boundary "b"
  const char* type;
  const char* body;         // UTF-8
  const char* attachments;  // "name type size" each, joined by "|"
  const char* why;
};

TEST(HostMime, TheBodyAndTheAttachmentsAreChosen) {
  const BodyCase cases[] = {
      {"--b\n\none\n--b\n\ntwo\n--b--", "mixed", "one\r\ntwo", "", "inline texts follow each other"},
      {"--b\nContent-Type: text/html\n\n<b>h</b>\n--b\nContent-Type: text/plain\n\np\n--b--", "alternative",
       "p", "", "plain text wins"},
      {"--b\nContent-Type: text/html\n\n<p>a &lt; b<br>c</p>\n--b--", "alternative", "a < b\r\nc\r\n", "",
       "HTML alone"},
      {"--b\nContent-Type: image/png\n\nxyz\n--b\n\ntext\n--b--", "mixed", "text", "part1.png image/png 3",
       "a part without a name"},
      {"--b\nContent-Disposition: attachment\n\nfile\n--b--", "mixed", "", "part1.txt text/plain 4",
       "a text marked as attachment"},
      {"--b\nContent-Type: application/x; name=\"a/b\\\\c:d.txt \"\n\nfile\n--b--", "mixed", "",
       "c_d.txt application/x 4", "folders and forbidden characters are taken from names"},
      {"--b\nContent-Type: x/y; name=\"../..\"\n\nf\n--b--", "mixed", "", "part1.bin x/y 1",
       "a name of dots"},
      {"--b\n\nSubject: inner/mail\n\ninner\n--b--", "digest", "inner", "mail.eml message/rfc822 26",
       "a digest's parts are mails; the first one is shown when there is no text"},
      {"--b\nContent-Type: text/plain; name=a.txt\n\nmine\n--b\nContent-Type: message/rfc822\n\nSubject: "
       "s\n\nhis\n"
       "--b--",
       "mixed", "mine", "s.eml message/rfc822 15", "a named text beside a forwarded mail is the mail's own"},
      {"--b\nContent-Type: text/plain; name=a.txt\n\nonly\n--b--", "mixed", "only", "", "a lone named text"},
      {"--b\nContent-Type: text/html; name=h.htm\n\n<p>h\n--b\nContent-Type: "
       "text/plain\nContent-Disposition: "
       "inline; filename=p.txt\n\np\n--b--",
       "mixed", "p", "h.htm text/html 4", "of named texts the plain one"},
      {"--b\nContent-Type: image/png\n\nx\n--b\nContent-Type: multipart/mixed; "
       "boundary=c\n\n--c\nContent-Type: "
       "a/b\n\ny\n--c\nContent-Type: text/plain; name=n.txt\n\nnamed\n--c--\n--b--",
       "mixed", "named", "part1.png image/png 1|part2.bin a/b 1", "a named text further in"},
      {"--b\n\ntext\n--b\nContent-Type: text/plain; name=a.txt\n\nfile\n--b--", "mixed", "text",
       "a.txt text/plain 4", "beside a text without a name it is a file"},
      {"--b\nContent-Type: text/plain; name=a.txt\nContent-Disposition: "
       "attachment\n\nfile\n--b\nContent-Type: "
       "message/rfc822\n\nSubject: s\n\nhis\n--b--",
       "mixed", "", "a.txt text/plain 4|s.eml message/rfc822 15", "a file beside a forwarded mail: no text"},
      {"--b\nContent-Type: text/plain\nHello: no\nwithout an empty line\n\nmore\n--b--", "mixed",
       "without an empty line\r\n\r\nmore", "", "a part's header ends at a line that is none"},
      {"--b\njust text\nmore\n--b--", "mixed", "just text\r\nmore", "", "a part without any header"},
      {"--b\nContent-Type: text/plain\n>broken\nContent-Transfer-Encoding: base64\n\nYWJj\n--b--", "mixed",
       "abc", "", "a broken line within a part's header"},
      {"--b\nContent-Type: multipart/mixed; boundary=c\n\n--c\n\nin\n--b\n\nout\n--b--", "mixed", "in\r\nout",
       "", "an inner multipart that is never closed ends with its part"},
  };
  for (const BodyCase& c : cases) {
    const std::string header = "Content-Type: multipart/" + std::string(c.type) + "; boundary=b\n\n";
    const HostMessage message = MakeHostMessage(header + c.parts);
    std::string attachments;
    for (const Attachment& each : message.attachments) {
      if (!attachments.empty()) attachments += '|';
      attachments += Utf8(each.file_name) + ' ' + each.content_type + ' ' + std::to_string(each.bytes.size());
    }
    EXPECT_EQ(Utf8(message.text.substr(message.body_offset)), c.body) << c.why;
    EXPECT_EQ(attachments, c.attachments) << c.why;
  }
}

TEST(HostMime, DeepNestingIsReadAsText) {
  std::string raw;
  for (int i = 0; i < 200; ++i)
    raw += "Content-Type: multipart/mixed; boundary=b" + std::to_string(i) + "\n\n--b" + std::to_string(i) +
           "\n";
  const HostMessage message = MakeHostMessage(raw + "\nend");
  EXPECT_NE(message.text.find("end"), std::string::npos);
  EXPECT_LT(message.text.size(), 2 * raw.size());
}

TEST(HostMime, TypesOfAttachmentsArePrintable) {
  const HostMessage message = MakeHostMessage("Content-Type: a/\x93\xFA\x01\n\nx"sv);
  ASSERT_EQ(message.attachments.size(), 1u);
  EXPECT_EQ(message.attachments[0].content_type, "a/???");
}

}  // namespace
}  // namespace wrenfold
