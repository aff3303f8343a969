// Whom replies go to, and what forwards hold.
#include <gtest/gtest.h>

#include "host/writing/draft_text.h"

namespace wrenfold {
namespace {

constexpr std::string_view kMail =
    "From: Alice <alice@example.com>\r\nReply-To: list@example.org\r\nTo: ME@example.com, \"B, C\" "
    "<b@example.com>\r\n"
    "Cc: alice@example.com, c@example.com,\r\n b@example.com\r\nSubject: s\r\nMessage-ID: "
    "<1@example.com>\r\n\r\nbody\r\n";

TEST(ReplyRecipients, FollowTheKind) {
  struct Case {
    int kind;
    const char* to;
    const char* cc;
  };
  constexpr char kList[] = "list@example.org";
  constexpr char kAlice[] = "Alice <alice@example.com>";
  constexpr char kOthers[] = "\"B, C\" <b@example.com>, alice@example.com, c@example.com";
  constexpr char kWithMe[] = "ME@example.com, \"B, C\" <b@example.com>, alice@example.com, c@example.com";
  const Case cases[] = {
      {0, kList, ""},
      {1, kList, ""},
      {2, kList, kOthers},
      {3, kList, kWithMe},
      {4, kList, ""},
      {5, kAlice, ""},
      {6, kList, ""},
      {7, kAlice, "\"B, C\" <b@example.com>, c@example.com"},
      {8, kAlice, "ME@example.com, \"B, C\" <b@example.com>, c@example.com"},
      {9, kList, kOthers},
      {10, kAlice, ""},
      {11, kAlice, "\"B, C\" <b@example.com>, c@example.com"},
      {12, kList, ""},
      {-1, kList, ""},
  };
  for (const Case& c : cases) {
    const Recipients found = ReplyRecipients(kMail, static_cast<ReplyKind>(c.kind), "me@example.com");
    EXPECT_EQ(found.to, c.to) << c.kind;
    EXPECT_EQ(found.cc, c.cc) << c.kind;
  }
  EXPECT_EQ(ReplyRecipients("", ReplyKind::kAll, "").to, "");
}

TEST(Forward, HoldsHeadersAndBody) {
  EXPECT_EQ(ForwardHeaders(kMail), "To: \r\nSubject: Fwd: s\r\nReferences: <1@example.com>\r\n\r\n");
  EXPECT_EQ(ForwardHeaders("Subject: FWD: s\r\n\r\n"), "To: \r\nSubject: FWD: s\r\n\r\n");
  EXPECT_EQ(ForwardedText("Subject: s\r\nX: y\r\n\r\nbody\r\n"),
            "----- Forwarded mail -----\r\nSubject: s\r\n\r\nbody\r\n");
  EXPECT_EQ(ForwardedText("\r\nbody"), "----- Forwarded mail -----\r\n\r\nbody");
  EXPECT_EQ(ForwardedText("Subject: s"), "----- Forwarded mail -----\r\nSubject: s\r\n\r\n") << "no body";
}

TEST(Resent, NamesTheRecipientInFront) {
  EXPECT_EQ(ResentText("From: a\r\n\r\nb", "c@example.com", false),
            "Resent-To: c@example.com\r\nFrom: a\r\n\r\nb");
  EXPECT_EQ(ResentText("", "c\r\nX: y", true), "Resent-Bcc: c X: y\r\n") << "no second header";
}

TEST(ComposeBody, PutsTheBodyInItsPlace) {
  struct Case {
    const char* form;
    const char* body;
    const char* sign;
    const char* expected;
  };
  const Case cases[] = {
      {"", "b\r\n", "", "b\r\n"},
      {"Dear\r\n{body}\r\nBye\r\n", "b", "-- \r\nme", "Dear\r\nb\r\nBye\r\n-- \r\nme"},
      {"Dear\r\n{body}", "b\r\n", "", "Dear\r\nb\r\n"},
      {"Dear", "b", "me", "Dear\r\nb\r\nme"},
      {"not {body}\r\n", "b", "", "not {body}\r\nb"},
      {"{body}", "", "me", "me"},
  };
  for (const Case& c : cases) EXPECT_EQ(ComposeBody(c.form, c.body, c.sign), c.expected) << c.form;
}

TEST(DraftText, WritesTheHeadersOfAReply) {
  EXPECT_EQ(ReplyTo("From: a\r\nSubject: s\r\nMessage-ID: <1>\r\n\r\nb", "> b"),
            "To: a\r\nSubject: Re: s\r\nIn-Reply-To: <1>\r\nReferences: <1>\r\n\r\n> b");
  EXPECT_EQ(
      ReplyTo("From: a\r\nReply-To: r\r\nSubject: re: s\r\nMessage-ID: <2>\r\nReferences: <1>\r\n\r\n", ""),
      "To: r\r\nSubject: re: s\r\nIn-Reply-To: <2>\r\nReferences: <1>\r\n <2>\r\n\r\n");
  EXPECT_EQ(ReplyTo("", ""), "To: \r\nSubject: Re: \r\n\r\n");
}

}  // namespace
}  // namespace wrenfold
