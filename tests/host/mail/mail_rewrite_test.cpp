// A received mail that was changed, as the bytes of its file.
#include <gtest/gtest.h>

#include "host/mail/header_edit.h"
#include "host/mail/headers.h"
#include "host/mail/mail_rewrite.h"
#include "host/mail/mail_store.h"
#include "host/mime/message.h"

namespace wrenfold {
namespace {

constexpr std::string_view kMail =
    "Received: by a\n\tfor b\nsubject:=?ISO-2022-JP?B?GyRCN29MPhsoQg==?=\nX: \xE9\n"
    "Content-Type: multipart/mixed; boundary=b\n\n"
    "--b\n\none\n--b\nContent-Type: application/x-thing; name=a.bin\nContent-Transfer-Encoding: "
    "base64\n\nAAE=\n--b--\n";

std::string Changed(std::string_view raw, auto change) {
  const std::string before = MakeHostMessage(raw).text;
  std::string after = before;
  change(after);
  return RewrittenMail(raw, before, after, "=_new");
}

TEST(RewrittenMail, KeepsTheBytesOfWhatDidNotChange) {
  EXPECT_EQ(Changed(kMail, [](std::string&) {}), kMail);
  std::string expected(kMail);
  expected.insert(expected.find("\n\n--b") + 1, "X-New: 1\n");
  EXPECT_EQ(Changed(kMail, [](std::string& text) { AddHeader(text, "X-New", "1"); }), expected)
      << "the line ends are those of the mail";
  expected = kMail;
  expected.replace(expected.find("X: \xE9"), 4, "X: y");
  EXPECT_EQ(Changed(kMail, [](std::string& text) { SetHeader(text, "X", "y", 0); }), expected);
  expected = kMail;
  expected.erase(0, expected.find("subject"));
  EXPECT_EQ(Changed(kMail, [](std::string& text) { DeleteHeader(text, "Received", 0); }), expected);
}

TEST(RewrittenMail, WritesAChangedBodyWithItsAttachments) {
  const std::string raw = Changed(kMail, [](std::string& text) {
    text = std::string(SplitMail(text).headers) + "\r\n" + SystemCharsets().Utf8ToHost("二\r\n");
  });
  EXPECT_TRUE(raw.starts_with(kMail.substr(0, kMail.find("Content-Type"))));
  EXPECT_EQ(raw.find('\r'), raw.npos);
  const HostMessage read = MakeHostMessage(raw);
  EXPECT_EQ(SystemCharsets().HostToUtf8(SplitMail(read.text).body), "二\r\n");
  ASSERT_EQ(read.attachments.size(), 1u);
  EXPECT_EQ(read.attachments[0].file_name, "a.bin");
  EXPECT_EQ(read.attachments[0].bytes, std::string("\0\1", 2));
  EXPECT_EQ(CountHeaders(read.text, "Content-Type"), 1u);
}

TEST(RewrittenMail, StaysInItsCharset) {
  const std::string raw = Changed("Content-Type: text/plain; charset=ISO-2022-JP\r\n\r\n\x1B$B0l\x1B(B\r\n",
                                  [](std::string& text) { text += SystemCharsets().Utf8ToHost("二\r\n"); });
  EXPECT_NE(raw.find("charset=ISO-2022-JP"), raw.npos) << raw;
  EXPECT_NE(raw.find("\x1B$B0l\x1B(B\r\n\x1B$BFs\x1B(B\r\n"), raw.npos) << raw;
}

TEST(WithMailReplaced, TakesTheMailsPlaceInItsFile) {
  EXPECT_EQ(WithMailReplaced("A: 1\n\n", 0, "A: 1\n\n", "A: 2\n\n"), "A: 2\n\n");
  EXPECT_EQ(WithMailReplaced("A: 9\n\n", 0, "A: 1\n\n", "A: 2\n\n"), std::nullopt)
      << "another program wrote there";
  EXPECT_EQ(WithMailReplaced("", 0, "A: 1\n\n", "A: 2\n\n"), std::nullopt);

  const std::string mbox =
      "From a Mon Mar  3 09:15:00 2025\nA: 1\n\nx\n\nFrom b Mon Mar  3 09:15:00 2025\nB: 1\n\n>From y\n\n"
      "From c Mon Mar  3 09:15:00 2025\nC: 1\n\nz\n";
  const std::vector<StoredMail> mails = SplitMbox(mbox);
  ASSERT_EQ(mails.size(), 3u);
  const char* const changed[] = {"A: 2\n\nFrom q\n", "B: 2\n\n", "C: 2\n\nlast"};
  for (std::size_t i = 0; i < 3; ++i) {
    const auto file = WithMailReplaced(mbox, mails[i].offset, mails[i].raw, changed[i]);
    ASSERT_TRUE(file);
    const std::vector<StoredMail> read = SplitMbox(*file);
    ASSERT_EQ(read.size(), 3u) << *file;
    for (std::size_t j = 0; j < 3; ++j) {
      EXPECT_EQ(read[j].raw, i != j ? mails[j].raw : j == 2 ? "C: 2\n\nlast\n" : changed[i]) << i << j;
    }
  }
  EXPECT_EQ(WithMailReplaced(mbox, mails[1].offset, mails[0].raw, "x"), std::nullopt);
  EXPECT_EQ(WithMailReplaced(mbox, 5, mails[0].raw, "x"), std::nullopt);
}

}  // namespace
}  // namespace wrenfold
