// The small host as the receiver of other programs' mails: command lines, the outbox, the store,
// message images.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>

#include "host/base/paths.h"
#include "host/files/whole_file.h"
#include "host/mapi/mail_command.h"
#include "host/mapi/message_image.h"
#include "host/mapi/outbox.h"
#include "host/mapi/outgoing_mail.h"
#include "host/mapi/settings.h"
#include "host/mapi/store.h"
#include "src/mapi/command_line_builder.h"
#include "src/mapi/message_image.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

const MailStamp kStamp = {"Fri, 21 Nov 2025 10:00:00 +0900", "u-1", "Taro <taro@example.jp>"};

std::string Composed(const CommandLineRequest& request, const std::vector<OutgoingFile>& files = {}) {
  return ComposeMail(request, files, kStamp);
}

TEST(MailCommand, TakesTheArgumentsOfAMail) {
  const auto request = ParseMailCommand(
      "sendnow Macro=a%20b Subject=Hello%20there body=one%0Atwo\r\n%zz To=Jo%20%3Cj@x%3E%2C%20b Cc=c To=d "
      "Bcc=e Attach=C%3A\\a%20b*b%2Etxt Attach=%2A template=1");
  ASSERT_TRUE(request);
  EXPECT_EQ(request->command, MailCommand::kSendNow);
  EXPECT_EQ(request->macro, "a b");
  EXPECT_EQ(request->subject, "Hello there");
  EXPECT_EQ(request->body, "one\ntwo\r\n%zz");
  EXPECT_EQ(request->to, "Jo <j@x>, b, d");
  EXPECT_EQ(request->cc, "c");
  EXPECT_EQ(request->bcc, "e");
  ASSERT_EQ(request->files.size(), 2u);
  EXPECT_EQ(request->files[0].path, "C:\\a b");
  EXPECT_EQ(request->files[0].name, "b.txt");
  EXPECT_EQ(request->files[1].path, "*");
  EXPECT_EQ(request->files[1].name, "");
  EXPECT_TRUE(request->use_template);
  EXPECT_FALSE(request->sign);
}

TEST(MailCommand, TakesQuotedPathsAsTheyStand) {
  const auto request = ParseMailCommand("newmail attach=\"C:\\a b%20*.doc\" attach=\"\" template=1 sign=1");
  ASSERT_TRUE(request);
  ASSERT_EQ(request->files.size(), 2u);
  EXPECT_EQ(request->files[0].path, "C:\\a b%20*.doc");
  EXPECT_EQ(request->files[1].path, "");
  EXPECT_TRUE(request->sign);
}

TEST(MailCommand, OtherLinesAreRefused) {
  for (const char* line : {"", "send", " sendnow", "sendnowx", "NEWMAIL"})
    EXPECT_FALSE(ParseMailCommand(line)) << line;
  EXPECT_EQ(ParseMailCommand("unsentmail x y=z =")->command, MailCommand::kStoreUnsent)
      << "unknown words are passed by";
}

// What the library builds, the host reads back.
TEST(MailCommand, ReadsWhatTheLibraryBuilds) {
  wfinfo::mapi::Recipient recipient{};
  recipient.recipient_class = wfinfo::mapi::kCc;
  char name[] = "Jo (\"Sales\")";
  char address[] = "SMTP:jo@x.jp";
  recipient.name = name;
  recipient.address = address;
  wfinfo::mapi::Mail mail;
  mail.mode = 1;
  mail.subject = "100% = \x83\x5C *";
  mail.note = "";
  mail.recipients = {&recipient, 1};
  mail.read = [](const char* text) -> std::optional<std::string_view> {
    return text == nullptr ? std::nullopt : std::optional<std::string_view>(text);
  };
  std::string line(wfinfo::mapi::MailBlockSize(mail), '\0');
  line.resize(wfinfo::mapi::WriteMailCommand(mail, line.data()));
  const auto request = ParseMailCommand(line);
  ASSERT_TRUE(request);
  EXPECT_EQ(request->command, MailCommand::kStoreUnsent);
  EXPECT_EQ(request->subject, "100% = \x83\x5C *");
  EXPECT_EQ(request->body, "");
  EXPECT_EQ(request->cc, "\"Jo (Sales)\" <jo@x.jp>");
}

TEST(OutgoingMail, APlainMailByteForByte) {
  CommandLineRequest request;
  request.command = MailCommand::kSendNow;
  request.subject = "Hello";
  request.body = "one\ntwo";
  request.to = "a@x.jp, Jo <j@x.jp>";
  request.bcc = "b@x.jp";
  EXPECT_EQ(
      Composed(request),
      "From: Taro <taro@example.jp>\r\nTo: a@x.jp,\r\n Jo <j@x.jp>\r\nBcc: b@x.jp\r\nSubject: Hello\r\n"
      "Date: Fri, 21 Nov 2025 10:00:00 +0900\r\nMessage-ID: <u-1@wrenfold.invalid>\r\nMIME-Version: 1.0\r\n"
      "X-Wrenfold-Command: sendnow\r\nContent-Type: text/plain; charset=UTF-8\r\n"
      "Content-Transfer-Encoding: 7bit\r\n\r\none\r\ntwo\r\n");
}

TEST(OutgoingMail, TellsWhatIsToBecomeOfIt) {
  CommandLineRequest request;
  request.macro = "m";
  request.use_template = true;
  request.sign = true;
  const std::string mail = Composed(request, {{"C:\\gone.txt", "", true}});
  EXPECT_NE(mail.find("X-Unsent: 1\r\nX-Wrenfold-Command: newmail\r\nX-Wrenfold-Macro: m\r\n"
                      "X-Wrenfold-Options: template=1 sign=1\r\nX-Wrenfold-Missing-File: C:\\gone.txt\r\n"),
            std::string::npos)
      << mail;
}

TEST(OutgoingMail, JapaneseTextsAndEscapesBecomeUtf8) {
  CommandLineRequest request;
  request.subject = "\x93\xFA\x96\x7B \x1A\xE9\x80\x85";
  request.body = "\x93\xFA\x96\x7B";
  request.to = "\x93\xFA\x96\x7B <n@x.jp>";
  const std::string mail = Composed(request);
  EXPECT_NE(mail.find("Subject: =?UTF-8?B?5pel5pysIMOp?=\r\n"), std::string::npos) << mail;
  EXPECT_NE(mail.find("To: =?UTF-8?B?5pel5pys?= <n@x.jp>\r\n"), std::string::npos) << mail;
  EXPECT_TRUE(mail.ends_with("Content-Transfer-Encoding: base64\r\n\r\n5pel5pysDQo=\r\n")) << mail;
}

TEST(OutgoingMail, ALongSubjectIsCutIntoWordsOfWholeCharacters) {
  CommandLineRequest request;
  for (int i = 0; i < 40; ++i)
    *(request.subject ? &*request.subject : &request.subject.emplace()) += "\x93\xFA";
  const HostMessage read = MakeHostMessage(Composed(request));
  std::string expected = "Subject: ";
  for (int i = 0; i < 40; ++i) expected += "\x93\xFA";
  EXPECT_NE(read.text.find(expected), std::string::npos) << read.text;
}

TEST(OutgoingMail, Recipients) {
  const struct {
    const char* list;
    const char* header;
    const char* why;
  } cases[] = {
      {"Doe, John <j@x>", "\"Doe, John\" <j@x>", "a comma in a name"},
      {"\"Jo (Sales)\" <j@x>", "\"Jo (Sales)\" <j@x>", "quotes of the list are not doubled"},
      {"a@x, Jo", "a@x,\r\n Jo:;", "a name without address"},
      {"Jo, a@x", "Jo:;,\r\n a@x", "which does not belong to an address alone"},
      {"J. R. <j@x>", "\"J. R.\" <j@x>", "a dot in a name"},
      {"<j@x>", "<j@x>", "no name"},
      {" , ,", nullptr, "nobody"},
  };
  for (const auto& row : cases) {
    CommandLineRequest request;
    request.to = row.list;
    const std::string mail = Composed(request);
    if (row.header == nullptr) {
      EXPECT_EQ(mail.find("\r\nTo:"), std::string::npos) << row.why;
    } else {
      EXPECT_NE(mail.find("\r\nTo: " + std::string(row.header) + "\r\n"), std::string::npos)
          << row.why << mail;
    }
  }
}

TEST(OutgoingMail, RecipientsAreReadAsTheirProgramsWroteThem) {
  const struct {
    const char* list;
    const char* header;
    const char* why;
  } cases[] = {
      {"\xE6\x97\xA5\xE6\x9C\xAC <n@x.jp>", "=?UTF-8?B?5pel5pys?= <n@x.jp>", "UTF-8"},
      {"\x93\xFA\x96\x7B <n@x.jp>", "=?UTF-8?B?5pel5pys?= <n@x.jp>", "Shift-JIS"},
      {"\xE6\x97\xA5 <a@x>, \x93\xFA <b@x>", "=?UTF-8?B?5pel?= <a@x>,\r\n =?UTF-8?B?5pel?= <b@x>",
       "each on its own"},
      {"\"\xE6\x97\xA5, x\" <a@x>", "=?UTF-8?B?5pelLCB4?= <a@x>", "a comma in quotes"},
      {"\xE6\x97\xA5, \xE6\x9C\xAC <a@x>", "=?UTF-8?B?5pelLCDmnKw=?= <a@x>", "a comma in a name"},
      {"\x1A\xE9\x80\x85 <a@x>", "=?UTF-8?B?w6k=?= <a@x>", "an escape is host text"},
  };
  for (const auto& row : cases) {
    CommandLineRequest request;
    request.to = request.cc = request.bcc = row.list;
    const std::string mail = Composed(request);
    for (const char* name : {"To", "Cc", "Bcc"}) {
      EXPECT_NE(mail.find("\r\n" + std::string(name) + ": " + row.header + "\r\n"), std::string::npos)
          << row.why << mail;
    }
  }
}

TEST(OutgoingMail, NothingBreaksOutOfAHeader) {
  CommandLineRequest request;
  request.subject = "a\r\nBcc: evil@x";
  request.to = "b\r\nX: y <c@x\r\n>";
  const std::string mail = Composed(request);
  EXPECT_EQ(mail.find("\nBcc:"), std::string::npos);
  EXPECT_EQ(mail.find("\nX:"), std::string::npos);
}

TEST(OutgoingMail, AttachmentsComeBackAsTheyWere) {
  CommandLineRequest request;
  request.body = "see";
  std::string bytes;
  for (int i = 0; i < 1000; ++i) bytes += static_cast<char>(i * 7);
  const HostMessage read = MakeHostMessage(
      Composed(request, {{"a \xE6\x97\xA5.bin", bytes, false}, {"b.txt", "", false}, {"gone", "", true}}));
  EXPECT_EQ(read.text.substr(read.body_offset), "see\r\n[missing attachment: gone]\r\n");
  ASSERT_EQ(read.attachments.size(), 2u);
  EXPECT_EQ(read.attachments[0].file_name, "a \x93\xFA.bin");
  EXPECT_EQ(read.attachments[0].bytes, bytes);
  EXPECT_EQ(read.attachments[1].file_name, "b.txt");
  EXPECT_EQ(read.attachments[1].bytes, "");
}

class Folder : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("wrenfold-mapi-" + std::to_string(getpid()));
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }
  void Write(const std::string& name, const std::string& bytes) {
    std::ofstream(folder_ / PathFromUtf8(name), std::ios::binary) << bytes;
  }
  fs::path folder_;
};

TEST_F(Folder, TheOutboxHoldsWholeMailsOnly) {
  Write("a.txt", "content");
  CommandLineRequest request;
  request.files = {{(folder_ / "a.txt").string(), "shown.txt"}, {(folder_ / "none").string(), ""}, {"", ""}};
  EXPECT_EQ(PutIntoOutbox(request, kStamp, folder_ / "out" / "box"), std::nullopt);
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder_ / "out" / "box"))
    names.push_back(entry.path().filename());
  EXPECT_EQ(names, std::vector<std::string>{"u-1.eml"});
  MapiStore store(folder_ / "out" / "box");
  const HostMessage read = MakeHostMessage(store.Read("u-1.eml").value_or(""));
  ASSERT_EQ(read.attachments.size(), 1u);
  EXPECT_EQ(read.attachments[0].file_name, "shown.txt");
  EXPECT_EQ(read.attachments[0].bytes, "content");
  EXPECT_NE(read.text.find("X-Wrenfold-Missing-File:"), std::string::npos);
}

TEST_F(Folder, NoMailOfTheOutboxTakesThePlaceOfAnother) {
  fs::create_directories(folder_ / "box");
  Write("box/u-1.eml", "another mail");
  EXPECT_EQ(PutIntoOutbox({}, kStamp, folder_ / "box"), std::nullopt);
  EXPECT_EQ(ReadWholeFile(folder_ / "box/u-1.eml"), "another mail");
  EXPECT_TRUE(fs::exists(folder_ / "box/u-1 (2).eml"));
}

// Paths and names in UTF-8 and Shift-JIS; of bytes that can be both, the file that is there decides.
TEST_F(Folder, FilesAreFoundAsTheirProgramsNamedThem) {
  const struct {
    const char* file;  // UTF-8
    const char* path;
    const char* shown;
    const char* name;  // UTF-8
    const char* why;
  } cases[] = {
      {"\xE6\x97\xA5.txt", "\xE6\x97\xA5.txt", "", "\xE6\x97\xA5.txt", "a path in UTF-8"},
      {"\xE6\x97\xA5.txt", "\x93\xFA.txt", "", "\xE6\x97\xA5.txt", "in Shift-JIS"},
      {"a.txt", "a.txt", "\xE6\x97\xA5.txt", "\xE6\x97\xA5.txt", "a name in UTF-8"},
      {"a.txt", "a.txt", "\x93\xFA.txt", "\xE6\x97\xA5.txt", "in Shift-JIS"},
      {"\xEF\xBE\x83\xEF\xBD\xA9.txt", "\xC3\xA9.txt", "", "\xEF\xBE\x83\xEF\xBD\xA9.txt",
       "half-width katakana whose bytes are UTF-8 too"},
  };
  for (const auto& row : cases) {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    Write(row.file, "content");
    CommandLineRequest request;
    request.files = {{folder_.string() + "/" + row.path, row.shown}};
    EXPECT_EQ(PutIntoOutbox(request, kStamp, folder_ / "box"), std::nullopt);
    const HostMessage read = MakeHostMessage(MapiStore(folder_ / "box").Read("u-1.eml").value_or(""));
    ASSERT_EQ(read.attachments.size(), 1u) << row.why << read.text;
    EXPECT_EQ(SystemCharsets().HostToUtf8(read.attachments[0].file_name), row.name) << row.why;
    EXPECT_EQ(read.attachments[0].bytes, "content") << row.why;
  }
}

TEST_F(Folder, AnOutboxThatCannotBeWrittenIsToldOf) {
  Write("file", "");
  const auto reason = PutIntoOutbox({}, kStamp, folder_ / "file");
  ASSERT_TRUE(reason);
  const std::string file = (folder_ / "file").string();
  EXPECT_EQ(*reason, "cannot make the folder " + file + ": there is a file " + file);
}

TEST_F(Folder, TheStoreIsWalkedInOrderOfNames) {
  Write("b.eml", "Status: RO\r\n\r\n");
  Write("a.EML", "Subject: a\r\n\r\n");
  Write("c.txt", "");
  Write(std::string(252, 'x') + ".eml", "");
  MapiStore store(folder_);
  EXPECT_EQ(store.Next("", false), "a.EML");
  EXPECT_EQ(store.Next("a.EML", false), "b.eml");
  EXPECT_EQ(store.Next("b.eml", false), std::nullopt) << "a name that no caller's field can hold";
  EXPECT_EQ(store.Next("", true), "a.EML");
  EXPECT_EQ(store.Next("a.EML", true), std::nullopt) << "its Status says that it was read";
  store.MarkRead("a.EML");
  EXPECT_EQ(store.Next("", true), std::nullopt);
}

TEST_F(Folder, OnlyMailsOfTheStoreAreReadAndDeleted) {
  fs::create_directories(folder_ / "mails");
  Write("outside.eml", "x");
  Write("mails/in.eml", "mail");
  Write("mails/notes.txt", "x");
  MapiStore store(folder_ / "mails");
  EXPECT_EQ(store.Read("in.eml"), "mail");
  for (const char* identifier : {"", "..", "../outside.eml", "notes.txt", "gone.eml", "/etc/passwd"}) {
    EXPECT_EQ(store.Read(identifier), std::nullopt) << identifier;
    EXPECT_EQ(store.Delete(identifier), MapiResult::kInvalidMessage) << identifier;
  }
  EXPECT_EQ(store.Delete("in.eml"), MapiResult::kSuccess);
  EXPECT_EQ(store.Delete("in.eml"), MapiResult::kInvalidMessage);
  EXPECT_TRUE(fs::exists(folder_ / "outside.eml"));
}

TEST(MapiImage, TheLibraryReadsWhatTheHostWrites) {
  const HostMessage message = MakeHostMessage(
      "From: \"Doe, J\" <j@x.jp>\r\nTo: a@x.jp, B <b@x.jp>\r\nCc: c@x.jp\r\nSubject: one\r\n two\r\n"
      "Date: Mon, 2 Jun 2025 09:05:00 +0900\r\n\r\nbody\r\n");
  for (const std::uint32_t flags : {0u, std::uint32_t{kMapiEnvelopeOnly}}) {
    const std::vector<char> image = MakeMessageImage(message, {{"C:\\t\\a", "a"}}, true, flags);
    const std::unique_ptr<char[]> room(new char[wfinfo::mapi::ImageRoom(image.size())]());
    std::memcpy(room.get(), image.data(), image.size());
    const auto& mail = *wfinfo::mapi::ConvertImage(room.get(), image.size());
    EXPECT_STREQ(mail.subject, "one two");
    if (flags == 0) {
      EXPECT_STREQ(mail.note_text, "body\r\n");
    } else {
      EXPECT_EQ(mail.note_text, nullptr);
    }
    EXPECT_STREQ(mail.date_received, "2025/06/02 09:05");
    EXPECT_EQ(mail.message_type, nullptr);
    EXPECT_EQ(mail.conversation_id, nullptr);
    EXPECT_EQ(mail.flags, 1u);
    EXPECT_STREQ(mail.originator->name, "Doe, J");
    EXPECT_STREQ(mail.originator->address, "SMTP:j@x.jp");
    ASSERT_EQ(mail.recipient_count, 3u);
    EXPECT_STREQ(mail.recipients[0].name, "a@x.jp");
    EXPECT_STREQ(mail.recipients[1].name, "B");
    EXPECT_STREQ(mail.recipients[2].address, "SMTP:c@x.jp");
    EXPECT_EQ(mail.recipients[1].recipient_class, wfinfo::mapi::kTo);
    EXPECT_EQ(mail.recipients[2].recipient_class, wfinfo::mapi::kCc);
    ASSERT_EQ(mail.file_count, 1u);
    EXPECT_STREQ(mail.files[0].path, "C:\\t\\a");
    EXPECT_STREQ(mail.files[0].file_name, "a");
  }
}

// Leaves dirt where the next call has its locals.
__attribute__((noinline)) void DirtyStack() {
  volatile char dirt[16384];
  for (volatile char& byte : dirt) byte = '\xA5';
}

TEST(MapiImage, HoldsNothingBetweenItsMembers) {
  const HostMessage message = MakeHostMessage("From: j@x\r\nTo: a@x, b@x\r\nSubject: s\r\n\r\n");
  DirtyStack();
  std::vector<char> image = MakeMessageImage(message, {{"C:\\t\\a", "a"}, {"C:\\t\\b", "b"}}, true, 0);
  const auto zero = [&](std::size_t at, std::size_t size) {
    return std::string_view(image.data(), image.size()).substr(at, size) == std::string(size, '\0');
  };
  wfinfo::mapi::MailRecord mail;
  std::memcpy(&mail, image.data(), sizeof mail);
  for (const std::size_t gap : {4, 52, 68, 84}) EXPECT_TRUE(zero(gap, 4)) << gap;
  const auto sender = reinterpret_cast<std::size_t>(mail.originator);
  const auto recipients = reinterpret_cast<std::size_t>(mail.recipients);
  for (const std::size_t start : {sender, recipients, recipients + 40}) EXPECT_TRUE(zero(start + 24, 16));
  const auto files = reinterpret_cast<std::size_t>(mail.files);
  for (const std::size_t start : {files, files + 40}) EXPECT_TRUE(zero(start + 12, 4) && zero(start + 32, 8));
}

TEST(MapiSettings, AreReadLineByLine) {
  const auto parsed =
      ParseMapiSettings("\xEF\xBB\xBF# mine\r\nfrom = Taro <t@x>\r\n\r\nslow=1500\nmodal=0\ndeaf=1\ndie=0");
  const auto* settings = std::get_if<MapiSettings>(&parsed);
  ASSERT_NE(settings, nullptr);
  EXPECT_EQ(settings->from, "Taro <t@x>");
  EXPECT_EQ(settings->slow_ms, 1500u);
  EXPECT_EQ(settings->modal_ms, 0u);
  EXPECT_TRUE(settings->deaf);
  EXPECT_FALSE(settings->die);
}

TEST(MapiSettings, SayWhichLineIsWrong) {
  for (const char* line : {"slow", "slow=", "slow=1s", "slow=1234567890", "deaf=yes", "from=", "fast=1"}) {
    const auto parsed = ParseMapiSettings(std::string("deaf=0\n") + line);
    ASSERT_TRUE(std::holds_alternative<std::string>(parsed)) << line;
    EXPECT_EQ(std::get<std::string>(parsed), std::string("line 2 is no setting: ") + line);
  }
}

}  // namespace
}  // namespace wrenfold
