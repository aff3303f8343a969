#include "host/mail/outgoing_text.h"

#include <gtest/gtest.h>

#include "host/mime/message.h"

namespace wrenfold {
namespace {

const OutgoingStamp kStamp{"Sat, 22 Nov 2025 10:00:00 +0900", "u-1", "bob@example.com"};

TEST(FinishedMail, GetsWhatItLacksAndLosesOurOwnHeaders) {
  const struct {
    const char* raw;
    const char* expected;
    const char* why;
  } cases[] = {
      {"To: a@x\r\n\r\nt\r\n",
       "From: bob@example.com\r\nDate: Sat, 22 Nov 2025 10:00:00 +0900\r\nMessage-ID: "
       "<u-1@wrenfold.invalid>\r\n"
       "To: a@x\r\n\r\nt\r\n",
       "all three"},
      {"To: a@x\nFrom: c@x\nDate: d\nMessage-ID: <m>\n\none\ntwo",
       "To: a@x\r\nFrom: c@x\r\nDate: d\r\nMessage-ID: <m>\r\n\r\none\r\ntwo\r\n", "none, but the line ends"},
      {"From: c@x\r\nDate: d\r\nMessage-ID: <m>\r\nX-Unsent: 0\r\nX-Wrenfold-Missing-File: C:\\a\r\n "
       "b\r\nTo: a@x\r\n"
       "\r\n",
       "From: c@x\r\nDate: d\r\nMessage-ID: <m>\r\nTo: a@x\r\n\r\n", "with their folded lines"},
      {"Resent-To: e@x\r\nFrom: c@x\r\nTo: a@x\r\n\r\nX-Unsent: 1\r\n",
       "Resent-From: bob@example.com\r\nResent-Date: Sat, 22 Nov 2025 10:00:00 +0900\r\n"
       "Resent-Message-ID: <u-1@wrenfold.invalid>\r\nResent-To: e@x\r\nFrom: c@x\r\nTo: a@x\r\n\r\nX-Unsent: "
       "1\r\n",
       "a resent mail keeps its own date; the body is no header"},
      {"From: c@x\r\nDate: d\r\nMessage-ID: <m>\r\nTo: a@x",
       "From: c@x\r\nDate: d\r\nMessage-ID: <m>\r\nTo: a@x\r\n\r\n", "a mail without its empty line"},
  };
  for (const auto& [raw, expected, why] : cases) {
    EXPECT_EQ(FinishMail(raw, kStamp), expected) << why;
    EXPECT_EQ(FinishMail(expected, {"other", "other", "other"}), expected) << "finished once: " << why;
  }
}

TEST(FinishedMail, HasRecipientsWhenAnAddressIsNamed) {
  const struct {
    const char* raw;
    bool expected;
  } cases[] = {
      {"To: a@x\r\n\r\n", true},        {"Cc: a@x\r\n\r\n", true},
      {"bcc: a@x\r\n\r\n", true},       {"To: \r\nCc:\r\n\r\nTo: a@x", false},
      {"To: Jo:;\r\n\r\n", false},      {"Subject: a@x\r\n\r\n", false},
      {"Resent-To: a@x\r\n\r\n", true}, {"", false},
  };
  for (const auto& [raw, expected] : cases) EXPECT_EQ(HasRecipients(raw), expected) << raw;
}

TEST(FinishedMail, WaitsForItsWriterWhenItSaysSo) {
  EXPECT_FALSE(IsToBeSent("X-Unsent: 1\r\n\r\n"));
  EXPECT_TRUE(IsToBeSent("X-Unsent: 0\r\n\r\n"));
  EXPECT_TRUE(IsToBeSent("To: a@x\r\n\r\nX-Unsent: 1\r\n"));
}

// Read back by the host's own reader: Shift-JIS text, an escape, a name with a comma, a folded header.
TEST(WrittenMail, ReadsBackAsItWasWritten) {
  const std::string host =
      "To: \"\x93\xFA, \x1A\xE9\x80\x85\" <a@x.jp>, b@x\r\nSubject: \x93\xFA\x96\x7B\r\n \x8C\xEA\r\n"
      "X-Plain: one\r\n two\r\n\r\n\x96\x7B\x95\xB6\r\nASCII\r\n";
  const std::string mail = MailOfHostText(host);
  for (const char c : mail) EXPECT_LT(static_cast<unsigned char>(c), 0x80);
  const HostMessage read = MakeHostMessage(mail);
  EXPECT_EQ(read.text.substr(read.body_offset), "\x96\x7B\x95\xB6\r\nASCII\r\n");
  EXPECT_NE(read.text.find("\x1A\xE9\x80\x85"), std::string::npos) << read.text;
  EXPECT_NE(read.text.find("<a@x.jp>,\r\n b@x\r\n"), std::string::npos) << read.text;
  EXPECT_NE(read.text.find("Subject: \x93\xFA\x96\x7B \x8C\xEA\r\n"), std::string::npos) << read.text;
  EXPECT_NE(read.text.find("X-Plain: one\r\n two\r\n"), std::string::npos) << read.text;
}

TEST(WrittenMail, OfAsciiStaysReadable) {
  EXPECT_EQ(MailOfHostText("To: a@x\r\nContent-Type: text/plain; charset=iso-2022-jp\r\n\r\nhello\r\n"),
            "To: a@x\r\nMIME-Version: 1.0\r\nContent-Type: text/plain; charset=UTF-8\r\n"
            "Content-Transfer-Encoding: 7bit\r\n\r\nhello\r\n");
}

}  // namespace
}  // namespace wrenfold
