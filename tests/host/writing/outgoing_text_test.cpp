#include "host/writing/outgoing_text.h"

#include <gtest/gtest.h>

#include <string>

namespace wrenfold {
namespace {

const MailStamp kStamp{"Sat, 22 Nov 2025 10:00:00 +0900", "u-1", "bob@example.com"};

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
      {"Resent-To: new@x\r\nResent-Bcc: n@x\r\nReceived: by x\r\nResent-From: f@x\r\nResent-To: old@x\r\n"
       "Resent-Cc: c@x,\r\n d@x\r\nResent-Bcc: o@x\r\nBcc: b@x\r\nTo: a@x\r\n\r\n",
       "Resent-From: bob@example.com\r\nResent-Date: Sat, 22 Nov 2025 10:00:00 +0900\r\n"
       "Resent-Message-ID: <u-1@wrenfold.invalid>\r\nResent-To: new@x\r\nResent-Bcc: n@x\r\nReceived: by "
       "x\r\n"
       "Resent-From: f@x\r\nX-Resent-To: old@x\r\nX-Resent-Cc: c@x,\r\n d@x\r\nTo: a@x\r\n\r\n",
       "only whom the newest block names gets the mail"},
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
      {"To: a@x\r\n\r\n", true},
      {"Cc: a@x\r\n\r\n", true},
      {"bcc: a@x\r\n\r\n", true},
      {"To: \r\nCc:\r\n\r\nTo: a@x", false},
      {"To: Jo:;\r\n\r\n", false},
      {"Subject: a@x\r\n\r\n", false},
      {"Resent-To: a@x\r\n\r\n", true},
      {"", false},
      {"Resent-To: \r\nTo: a@x\r\n\r\n", false},
      {"Resent-To: Grp:;\r\nTo: a@x\r\n\r\n", false},
      {"To: x (a@x)\r\n\r\n", false},
      {"Resent-From: b@x\r\nResent-To:\r\nSubject: s\r\nResent-To: old@x\r\n\r\n", false},
  };
  for (const auto& [raw, expected] : cases) EXPECT_EQ(HasRecipients(raw), expected) << raw;
}

TEST(FinishedMail, WaitsForItsWriterWhenItSaysSo) {
  EXPECT_FALSE(IsToBeSent("X-Unsent: 1\r\n\r\n"));
  EXPECT_TRUE(IsToBeSent("X-Unsent: 0\r\n\r\n"));
  EXPECT_TRUE(IsToBeSent("To: a@x\r\n\r\nX-Unsent: 1\r\n"));
}

TEST(DeferredMail, IsDueWhenItsTimeHasCome) {
  const struct {
    const char* header;
    bool expected;
    const char* why;
  } cases[] = {
      {"Deferred-Delivery: Sat, 22 Nov 2025 09:59:59 +0900", true, "a second ago"},
      {"Deferred-Delivery: Sat, 22 Nov 2025 10:00:00 +0900", true, "just now"},
      {"Deferred-Delivery: Sat, 22 Nov 2025 10:00:01 +0900", false, "in a second"},
      {"deferred-delivery: Sat, 22 Nov 2025 00:00:00 -0200", false, "an hour to go in another zone"},
      {"Deferred-Delivery: 22 Nov 2025 10:00:01", false, "without a zone, on this clock"},
      {"Deferred-Delivery: 2025/11/22 10:00:00", true, "in another form"},
      {"Deferred-Delivery: tomorrow", false, "no date: nothing leaves that somebody wanted to leave later"},
      {"Deferred-Delivery: ", true, "no time at all"},
      {"Subject: s", true, "not deferred"},
  };
  for (const auto& [header, expected, why] : cases) {
    EXPECT_EQ(IsDue(std::string(header) + "\r\n\r\n", kStamp.date), expected) << why;
  }
  EXPECT_TRUE(IsDue("Deferred-Delivery: Sat, 22 Nov 2125 10:00:00 +0900\r\n\r\n", ""))
      << "no time to compare with";
}

TEST(ResentMail, NamesItsRecipientInAscii) {
  EXPECT_EQ(HeaderOfHostText("Resent-To: a@x\r\n"), "Resent-To: a@x\r\n");
  EXPECT_EQ(HeaderOfHostText("Resent-To: \x93\xFA <a@x.jp>\r\n"), "Resent-To: =?UTF-8?B?5pel?= <a@x.jp>\r\n");
  EXPECT_EQ(HeaderOfHostText(""), "");
}

}  // namespace
}  // namespace wrenfold
