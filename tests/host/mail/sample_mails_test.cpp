// The sample mails through the whole way: file, MIME, charset, host text.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "host/mail/mail_store.h"
#include "host/mime/message.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

const std::filesystem::path kSamples = std::filesystem::path(WFINFO_SOURCE_DIR) / "samples" / "mails";

struct SampleCase {
  const char* file;
  std::size_t mail;  // in its file
  const char* header;
  const char* value;     // UTF-8, of its first occurrence
  const char* in_body;   // UTF-8
  const char* attached;  // names in UTF-8 with sizes
};

// UTF-8 is written as it is in the sources of tests.
const SampleCase kCases[] = {
    {"plain-ascii.eml", 0, "Received",
     " from mail.example.com (mail.example.com [192.0.2.10])\r\n\tby mx.example.org with ESMTPS id "
     "4XyZ12abcD\r\n"
     "\tfor <bob@example.org>; Mon, 3 Mar 2025 09:15:02 +0900",
     "Hello Bob,\r\n\r\nhere are", ""},
    {"japanese-iso-2022-jp.eml", 0, "Subject", " 来週の打ち合わせについて（資料を添えます）",
     "（「表」「能」「ソ」の文字化け対策）\r\n", ""},
    {"japanese-iso-2022-jp.eml", 0, "To", " 鈴木花子 <suzuki@example.jp>,\r\n\tsato@example.com",
     "鈴木様\r\n", ""},
    {"japanese-shift-jis.eml", 0, "Subject", " ﾃｽﾄ送信のお知らせ ①②③", "C:\\資料\\表示.txt\r\n", ""},
    {"japanese-shift-jis.eml", 0, "X-Comment", " ヘッダーに生の８ビット文字", "髙橋さん", ""},
    {"beyond-shift-jis.eml", 0, "Subject", " Café ☕ 회의 日程 😀", "𠮟る（BMP の外の漢字）", ""},
    {"beyond-shift-jis.eml", 0, "From", " Zoë Müller <zoe@example.com>", "안녕하세요, 회의는", ""},
    {"folded-and-repeated.eml", 0, "Subject",
     " A subject that is folded\r\n over three lines,\r\n\tthe last one behind a tab", "three Received", ""},
    {"folded-and-repeated.eml", 0, "X-Empty", "", "", ""},
    {"missing-headers.eml", 0, "Reply-To", " nobody@example.jp", "the last line has no line end", ""},
    {"attachments.eml", 0, "Subject", " 見積書をお送りします", "鈴木様\r\n\r\n見積書と図をお送りします。\r\n",
     "見積書 2025.csv 42, 図.png 463, report.txt 48"},
    {"reply.eml", 0, "Subject", " Re: 来週の打ち合わせについて（資料を添えます）",
     ">> 以前のご案内では１３時でしたが\r\n", ""},
    {"html-only.eml", 0, "Subject", " Spring sale – up to 30 % off",
     "Spring sale\r\nTea & coffee: 30 % off – today only.\r\nDarjeeling 5 €\r\nSencha 煎茶 7 €\r\n", ""},
    {"forwarded.eml", 0, "Subject", " Fwd: お見積り", "Please have a look", "お見積り.eml 466"},
    {"damaged.eml", 0, "To", " \"宛先\" <someone@example.jp>", "100 =ZZ, 日, cut", "evil_.bin 9"},
    {"damaged.eml", 0, "X-Raw-Utf8", " 生の UTF-8 ヘッダー\r\nThis line has no colon\r\nX-Zero: a b", "end ",
     "evil_.bin 9"},
    {"mailing-list.mbox", 0, "From", " Alice Baker <alice@example.com>", "\r\nFrom what I read", ""},
    {"mailing-list.mbox", 1, "From", " 山田太郎 <taro@example.jp>", "🙂\r\n\r\nFrom here on it is easy",
     ""},
    {"mailing-list.mbox", 2, "References", " <t1@example.com>\r\n <t2@example.jp>",
     "très bien.\r\n\r\n>From my notes: lines are counted from 0.\r\n____", ""},
    {"mailing-list.mbox", 3, "Subject", " Re: [users] How do I count lines? [SOLVED]", "Thank you both!\r\n",
     ""},
    {"newsletter/euc-jp.eml", 0, "Subject", " ［週刊便り］第１２号", "・丂（補助漢字）とｶﾀｶﾅ\r\n", ""},
    {"newsletter/koi8-r.eml", 0, "Subject", " Привет", "Привет, как дела?\r\n", ""},
};

// A header's value up to the next line that begins a named header; the text is already UTF-8.
std::string ValueOf(const std::string& text, const std::string& name, const char* expected) {
  const std::string padded = "\r\n" + text;
  const std::size_t at = padded.find("\r\n" + name + ":");
  if (at == padded.npos) return "(none)";
  const std::size_t from = at + 2 + name.size() + 1;
  const std::string value = padded.substr(from, std::string(expected).size() + 2);
  return value.ends_with("\r\n") ? value.substr(0, value.size() - 2) : value;
}

std::string Attached(const HostMessage& message) {
  std::string names;
  for (const Attachment& each : message.attachments) {
    if (!names.empty()) names += ", ";
    names += SystemCharsets().HostToUtf8(each.file_name) + ' ' + std::to_string(each.bytes.size());
  }
  return names;
}

TEST(HostSampleMails, ReadAsTheirReadmeSays) {
  for (const SampleCase& c : kCases) {
    MailStore store;
    ASSERT_EQ(store.Add(kSamples / c.file), std::nullopt);
    ASSERT_LT(c.mail, store.mails().size()) << c.file;
    const HostMessage message = MakeHostMessage(store.mails()[c.mail].raw);
    const std::string header = SystemCharsets().HostToUtf8(message.text.substr(0, message.body_offset));
    const std::string body = SystemCharsets().HostToUtf8(message.text.substr(message.body_offset));
    EXPECT_EQ(ValueOf(header, c.header, c.value), c.value) << c.file;
    EXPECT_NE(body.find(c.in_body), body.npos) << c.file << ": " << c.in_body << "\n" << body;
    EXPECT_EQ(Attached(message), c.attached) << c.file;
  }
}

TEST(HostSampleMails, AllAreLoadedWithFlagsAndFolders) {
  MailStore store;
  ASSERT_EQ(store.Add(kSamples), std::nullopt);
  ASSERT_EQ(store.mails().size(), 17u);
  ASSERT_EQ(store.folders().size(), 3u);
  EXPECT_EQ(store.folders()[0].name, "mails");
  EXPECT_EQ(store.folders()[1].name, "mailing-list");
  EXPECT_EQ(store.folders()[2].name, "newsletter");
  std::vector<std::uint32_t> flags;
  for (const StoredMail& mail : store.mails()) {
    if (mail.folder == 1) flags.push_back(mail.flags);
  }
  constexpr std::uint32_t kSeen = kMailRead | kMailOld;
  EXPECT_EQ(flags, (std::vector<std::uint32_t>{kSeen, kSeen | kMailReplied, kMailMarked, 0}));
}

TEST(HostSampleMails, ALongHeaderStaysWhole) {
  MailStore store;
  ASSERT_EQ(store.Add(kSamples / "folded-and-repeated.eml"), std::nullopt);
  const HostMessage message = MakeHostMessage(store.mails()[0].raw);
  const std::size_t from = message.text.find("References:");
  EXPECT_GT(message.body_offset - from, 8191u);
  EXPECT_EQ(message.text, store.mails()[0].raw) << "plain ASCII with CR LF is kept byte for byte";
}

TEST(HostSampleMails, AreKeptByteForByte) {
  MailStore store;
  ASSERT_EQ(store.Add(kSamples), std::nullopt);
  for (const StoredMail& mail : store.mails()) {
    const bool crlf = mail.raw.find("\r\n") != std::string::npos;
    EXPECT_EQ(crlf, mail.source.extension() == ".eml") << mail.source << ": were line ends converted?";
  }
}

}  // namespace
}  // namespace wrenfold
