// Mails that are handed on as they came.
#include "host/writing/resent_mail.h"

#include <gtest/gtest.h>

#include "host/mail/header_edit.h"
#include "host/mime/message.h"
#include "host/writing/draft_file.h"
#include "host/writing/outgoing_text.h"

namespace wrenfold {
namespace {

const MailStamp kStamp{"Sat, 22 Nov 2025 10:00:00 +0900", "u-1", "bob@example.com"};
constexpr char kCame[] =
    "Resent-From: f@x\r\nResent-Date: d\r\nResent-Message-ID: <r>\r\nResent-To: old@x\r\nFrom: alice@x\r\n"
    "Message-ID: <1@x>\r\nTo: team@x\r\nBcc: secret@x\r\nContent-Transfer-Encoding: "
    "base64\r\n\r\naGVsbG8=\r\n";

Draft Opened(const std::string& block = "Resent-To: new@x\r\n") {
  const HostMessage message = MakeHostMessage(kCame);
  Draft draft;
  draft.purpose = DraftPurpose::kForward;
  draft.text = block + message.text;
  draft.attachments = message.attachments;
  draft.resent = kCame;
  return draft;
}

TEST(ResentMail, HasABlockOfItsOwnAboveTheOldOnes) {
  const std::string mail = ResentMail("Resent-To: new@x\r\n", kCame, kStamp);
  EXPECT_EQ(mail,
            "Resent-From: bob@example.com\r\nResent-Date: Sat, 22 Nov 2025 10:00:00 +0900\r\n"
            "Resent-Message-ID: <u-1@wrenfold.invalid>\r\nResent-To: new@x\r\n"
            "Resent-From: f@x\r\nResent-Date: d\r\nResent-Message-ID: <r>\r\nX-Resent-To: old@x\r\nFrom: "
            "alice@x\r\n"
            "Message-ID: <1@x>\r\nTo: team@x\r\nContent-Transfer-Encoding: base64\r\n\r\naGVsbG8=\r\n");
  EXPECT_EQ(FinishMail(mail, {"other", "other", "other"}), mail) << "it lacks nothing";
  EXPECT_TRUE(HasRecipients(mail));
  EXPECT_FALSE(HasRecipients(ResentMail("Resent-To: \r\n", kCame, kStamp)))
      << "never those of the mail that came";
  EXPECT_EQ(ResentMail("Resent-To: a@x\r\n", "text alone", {"d", "u", ""}),
            "Resent-Date: d\r\nResent-Message-ID: <u@wrenfold.invalid>\r\nResent-To: a@x\r\n\r\ntext alone");
}

TEST(ResentMail, ThatWasOpenedGoesOnAsItCameWithItsNewHeaders) {
  Draft draft = Opened();
  EXPECT_EQ(FinishedMail(draft, kStamp), ResentMail("Resent-To: new@x\r\n", kCame, kStamp));
  SetHeader(draft.text, "Resent-To", "old@x", 0);
  AddHeader(draft.text, "Resent-Cc", "c@x");
  EXPECT_EQ(WhyNotAsItCame(draft), std::nullopt);
  EXPECT_EQ(BlockOf(draft), "Resent-To: old@x\r\nResent-Cc: c@x\r\n") << "the old one is no new one";
  DeleteHeader(draft.text, "Resent-To", 0);
  EXPECT_EQ(BlockOf(draft), "Resent-Cc: c@x\r\n");
}

TEST(ResentMail, ThatWasOpenedIsRefusedWhenItIsNotWhatCame) {
  const struct {
    void (*change)(Draft&);
    const char* why;
  } cases[] = {
      {[](Draft& draft) { SetBody(draft, "other"); }, "another text"},
      {[](Draft& draft) { SetHtmlEditing(draft, true); }, "HTML beside it"},
      {[](Draft& draft) {
         draft.attachments.push_back({"a", "text/plain", ""});
       },
       "a file"},
      {[](Draft& draft) { SetHeader(draft.text, "To", "me@x", 0); }, "another header"},
      {[](Draft& draft) { AddHeader(draft.text, "X-New", "x"); }, "one more"},
      {[](Draft& draft) { DeleteHeader(draft.text, "Resent-Date", 0); }, "an old block with a gap"},
  };
  for (const auto& [change, why] : cases) {
    Draft draft = Opened();
    change(draft);
    EXPECT_NE(WhyNotAsItCame(draft).value_or("").find("this one was changed"), std::string::npos) << why;
    EXPECT_FALSE(ReadDraftFile(DraftFile(draft, kStamp)).resent) << "its changes are kept: " << why;
  }
  Draft twice = Opened("Resent-To: a@x\r\nresent-to: b@x\r\n");
  EXPECT_EQ(WhyNotAsItCame(twice), "resent-to is there twice");
}

TEST(ResentMail, IsTheSameWhenItIsOpenedAgainFromItsDraft) {
  Draft draft = Opened("Resent-To: \r\n");
  draft.account = "me";
  const std::string file = DraftFile(draft, kStamp);
  EXPECT_TRUE(IsDraftFile(file));
  const Draft read = ReadDraftFile(file);
  EXPECT_EQ(read, draft);
}

}  // namespace
}  // namespace wrenfold
