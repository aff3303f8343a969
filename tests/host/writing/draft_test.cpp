// A mail that is being written: its body, template, HTML and lines, and its file.
#include <gtest/gtest.h>

#include "host/mail/headers.h"
#include "host/writing/draft.h"
#include "host/writing/draft_file.h"

namespace wrenfold {
namespace {

const MailStamp kStamp = {"Fri, 21 Nov 2025 10:00:00 +0900", "u-1", "Taro <taro@example.jp>"};

std::string Host(std::string_view utf8) { return SystemCharsets().Utf8ToHost(utf8); }
std::string Utf8(std::string_view host) { return SystemCharsets().HostToUtf8(host); }

Draft DraftOf(std::string text) {
  Draft draft;
  draft.text = std::move(text);
  return draft;
}

TEST(Draft, IsEmptyUntilSomethingIsPutIntoIt) {
  EXPECT_TRUE(IsEmpty(DraftOf("To: \r\nSubject: \r\n\r\n")));
  EXPECT_TRUE(IsEmpty(DraftOf("From: me@x\r\n\r\n \r\n"))) << "a sender alone is nothing written";
  EXPECT_FALSE(IsEmpty(DraftOf("To: a@x\r\n\r\n")));
  EXPECT_FALSE(IsEmpty(DraftOf("Subject: s\r\n\r\n")));
  EXPECT_FALSE(IsEmpty(DraftOf("\r\ntext")));
  Draft attached = DraftOf("\r\n");
  attached.attachments.push_back({"a.txt", "text/plain", ""});
  EXPECT_FALSE(IsEmpty(attached));
}

TEST(Draft, TakesABodyWithAnyLineEnds) {
  Draft draft = DraftOf("To: a\r\n\r\nold");
  SetBody(draft, "one\ntwo\rthree\r\r\nfour");
  EXPECT_EQ(draft.text, "To: a\r\n\r\none\r\ntwo\r\nthree\r\r\nfour");
  Draft headers = DraftOf("To: a");
  SetBody(headers, "x");
  EXPECT_EQ(headers.text, "To: a\r\n\r\nx") << "a header block without its empty line";
}

TEST(Draft, KeepsWhatWasWrittenWhenItsFrameChanges) {
  const Frame short_frame = {"{body}\r\nBye\r\n", "-- \r\nme\r\n", ""};
  const Frame polite_frame = {"Dear sir,\r\n{body}\r\n", "", ""};
  struct Case {
    const char* body;
    const char* expected;
    const char* why;
  };
  const Case cases[] = {
      {"> q\r\nBye\r\n-- \r\nme\r\n", "Dear sir,\r\n> q\r\n", "as it was framed"},
      {"> q\r\nmine\r\nBye\r\n-- \r\nme\r\n", "Dear sir,\r\n> q\r\nmine\r\n", "with lines written into it"},
      {"mine\r\n-- \r\nme\r\n", "Dear sir,\r\nmine\r\n", "the frame was torn: the signature goes"},
      {"mine\r\n", "Dear sir,\r\nmine\r\n", "nothing of the frame is left"},
  };
  for (const Case& c : cases) {
    Draft draft = DraftOf(std::string("To: a\r\n\r\n") + c.body);
    ChangeFrame(draft, short_frame, polite_frame);
    EXPECT_EQ(BodyOf(draft), c.expected) << c.why;
    EXPECT_EQ(SplitMail(draft.text).headers, "To: a\r\n");
  }
}

TEST(Draft, HasHtmlBesideItsText) {
  Draft draft = DraftOf("\r\na < b\r\n");
  SetHtmlEditing(draft, true);
  EXPECT_EQ(draft.html, "a &lt; b<br>\r\n");
  SetBody(draft, "c");
  EXPECT_EQ(draft.html, "c") << "the HTML follows the text";
  SetHtml(draft, "<p>Tea &amp; <b>coffee</b></p>");
  EXPECT_EQ(BodyOf(draft), "Tea & coffee\r\n") << "the text follows the HTML";
  SetHtmlEditing(draft, false);
  EXPECT_EQ(draft.html, "");
  EXPECT_EQ(BodyOf(draft), "Tea & coffee\r\n");
  Draft empty = DraftOf("\r\n");
  SetHtmlEditing(empty, true);
  EXPECT_NE(empty.html, "") << "an empty text is HTML too";
  ChangeFrame(empty, {}, {"", "-- \r\nme", "<i>me</i>"});
  EXPECT_TRUE(empty.html.ends_with("<i>me</i>")) << empty.html;
}

TEST(Draft, MarksTheLineWithTheCursor) {
  // An escape that ends in CR stands in front of the first line end.
  const std::string first = "a\x1A\x80\x80\x0D";
  Draft draft = DraftOf("\r\n" + first + "\r\nb\r\nc");
  EXPECT_FALSE(IsCursorLineUnfolded(draft)) << "the escape's CR is none of the line end";
  EXPECT_TRUE(SwitchCursorLine(draft));
  EXPECT_EQ(BodyOf(draft), first + "\r\r\nb\r\nc");
  EXPECT_TRUE(IsCursorLineUnfolded(draft));
  EXPECT_TRUE(SwitchCursorLine(draft));
  EXPECT_EQ(BodyOf(draft), first + "\r\nb\r\nc");
  draft.cursor_line = 2;
  EXPECT_TRUE(SwitchCursorLine(draft)) << "a last line gets a line end";
  EXPECT_EQ(BodyOf(draft), first + "\r\nb\r\nc\r\r\n");
  EXPECT_EQ(CountLines(draft), 3u);
  draft.cursor_line = 3;
  EXPECT_FALSE(SwitchCursorLine(draft));
}

// --- Its file ---

TEST(DraftFile, ComesBackAsItWas) {
  Draft draft =
      DraftOf(Host("To: \"Doe, Jane\" <jane@example.com>\r\nBcc: 山田 太郎 <taro@example.jp>\r\n"
                   "Subject: 見積書 – très long\r\nReferences: <1@x>\r\n <2@x>\r\nX-Mine: 1\r\n\r\n"
                   "本文\r\n\r\nFrom here 😀\r\n"));
  draft.purpose = DraftPurpose::kForward;
  draft.html = Host("<p>本文</p>\r\n");
  draft.attachments = {{Host("見積 1.csv"), "text/csv", "a,b\r\n"},
                       {"x.bin", "application/octet-stream", std::string("\0\xFF", 2)}};
  draft.template_name = Host("お礼");
  draft.sign_name = "Work";
  draft.charset = "utf-8";
  draft.account = "example";
  draft.answered_id = "<1@x>";
  draft.macro = "answer.macro";
  const std::string raw = DraftFile(draft, kStamp);
  EXPECT_TRUE(IsDraftFile(raw));
  Draft read = ReadDraftFile(raw);
  EXPECT_EQ(Utf8(read.text), Utf8(draft.text));
  EXPECT_EQ(read, draft);
}

TEST(DraftFile, KeepsADateAndASenderOfItsOwn) {
  const Draft draft =
      DraftOf("From: boss@x\r\nDate: Mon, 1 Jan 2024 00:00:00 +0000\r\nSubject: s\r\n\r\nx\r\n");
  EXPECT_EQ(ReadDraftFile(DraftFile(draft, kStamp)).text, draft.text);
  const std::string raw = FinishedMail(draft, kStamp);
  EXPECT_EQ(raw.find("Taro"), raw.npos);
  EXPECT_EQ(raw.find("21 Nov 2025"), raw.npos);
}

TEST(FinishedMail, SaysNothingOfTheDraft) {
  Draft draft = DraftOf(
      "To: a@x\r\nCc: \r\nSubject: s\r\nContent-Type: text/plain; charset=iso-2022-jp\r\n\r\nx\r\r\ny");
  draft.template_name = "T";
  EXPECT_EQ(
      FinishedMail(draft, kStamp),
      "From: Taro <taro@example.jp>\r\nTo: a@x\r\nSubject: s\r\nDate: Fri, 21 Nov 2025 10:00:00 +0900\r\n"
      "Message-ID: <u-1@wrenfold.invalid>\r\nMIME-Version: 1.0\r\n"
      "Content-Type: text/plain; charset=iso-2022-jp\r\nContent-Transfer-Encoding: 7bit\r\n\r\nx\r\ny\r\n")
      << "an empty Cc is left out, a line end that asks not to be folded is one";
  EXPECT_FALSE(IsDraftFile(FinishedMail(draft, kStamp)));
}

TEST(FinishedMail, IsWrittenInTheCharsetThatWasChosenWhenThatHoldsTheText) {
  struct Case {
    const char* charset;
    const char* body;
    const char* written;
    const char* why;
  };
  const Case cases[] = {
      {"", "abc", "us-ascii", "nothing chosen"},
      {"", "é", "utf-8", "nothing chosen"},
      {"iso-2022-jp", "日本", "iso-2022-jp", "held"},
      {"iso-2022-jp", "日本é", "utf-8", "not held"},
      {"iso-2022-jp", "ｱ", "utf-8", "half-width katakana are none of its characters"},
      {"iso-8859-1", "é", "iso-8859-1", "held"},
      {"big5", "中文", "big5", "held"},
      {"ks_c_5601-1987", "한국", "ks_c_5601-1987", "held"},
      {"windows-1251", "Привет", "windows-1251", "held"},
      {"none-such", "é", "utf-8", "an unknown name"},
  };
  for (const Case& c : cases) {
    Draft draft = DraftOf("To: a@x\r\n\r\n" + Host(c.body) + "\r\n");
    draft.charset = c.charset;
    EXPECT_EQ(CharsetOf(draft), c.written) << c.why;
    const std::string raw = FinishedMail(draft, kStamp);
    EXPECT_NE(raw.find(std::string("charset=") + c.written), raw.npos) << raw;
    EXPECT_EQ(Utf8(SplitMail(MakeHostMessage(raw).text).body), std::string(c.body) + "\r\n") << c.why;
  }
}

TEST(FinishedMail, NoBoundaryStandsInAPart) {
  Draft draft = DraftOf("\r\nx\r\n");
  const std::string attached = "Subject: inner\r\n\r\n--=_u-1\r\n--=_u-1--\r\n";
  draft.attachments.push_back({"inner.eml", "message/rfc822", attached});
  const HostMessage read = MakeHostMessage(FinishedMail(draft, kStamp));
  ASSERT_EQ(read.attachments.size(), 1u);
  EXPECT_EQ(read.attachments[0].bytes, attached) << "a mail goes along as it is";
  EXPECT_EQ(read.attachments[0].content_type, "message/rfc822");
}

TEST(WrittenHeader, SurvivesAReader) {
  struct Case {
    const char* name;
    const char* value;
    const char* written;
    const char* why;
  };
  const Case cases[] = {
      {"Subject", "plain", "Subject: plain\r\n", ""},
      {"Subject", "=?us-ascii?Q?x?=", "Subject: =?UTF-8?B?PT91cy1hc2NpaT9RP3g/PQ==?=\r\n",
       "no word by chance"},
      {"To", "a@x, b@x", "To: a@x, b@x\r\n", "as it is"},
      {"Errors-To", "é <a@x>", "Errors-To: =?UTF-8?B?w6k=?= <a@x>\r\n",
       "addresses too: no word may hold one"},
      {"To", "Yamada", "To: Yamada:;\r\n", "a name without an address"},
      {"To", "\"a \\\"b\\\", c\" <a@x>", "To: \"a \\\"b\\\", c\" <a@x>\r\n", "as it is"},
      {"To", "\"é \\\"b\\\"\" <a@x>", "To: =?UTF-8?B?w6kgImIi?= <a@x>\r\n",
       "backslashes are no part of the name"},
  };
  for (const Case& c : cases) EXPECT_EQ(WrittenHeader(c.name, Host(c.value)), c.written) << c.why;
  const std::string ids =
      WrittenHeader("References", "<1@x>" + std::string(12, ' ') + std::string(70, 'a') + " <3@x>");
  for (std::size_t at = 0; at < ids.size();) {
    const std::size_t end = ids.find("\r\n", at);
    EXPECT_LE(end - at, 90u) << ids;
    at = end + 2;
  }
}

}  // namespace
}  // namespace wrenfold
