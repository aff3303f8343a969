// Command lines for the host, byte for byte.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "src/mapi/command_line_builder.h"
#include "src/mapi/host_blocks.h"

namespace {

using namespace wfinfo::mapi;

char* Text(const char* text) { return const_cast<char*>(text); }

std::optional<std::string_view> ReadAny(const char* text) {
  if (text == nullptr) return std::nullopt;
  return std::string_view(text);
}

Recipient To(const char* name, const char* address, unsigned recipient_class = kTo) {
  return {0, recipient_class, Text(name), Text(address), 0, nullptr};
}

FileRecord Attached(const char* path, const char* name) { return {0, 7, 7, Text(path), Text(name), nullptr}; }

Mail PlainMail() {
  Mail mail;
  mail.mode = kSendNow;
  mail.subject = "s";
  mail.note = "n";
  mail.read = &ReadAny;
  return mail;
}

// Writes into a block of exactly the size that is asked for, so that the sanitizer sees every byte too many.
std::string Built(const Mail& mail) {
  const std::size_t size = MailBlockSize(mail);
  const std::unique_ptr<char[]> block(new char[size]);
  const std::size_t length = WriteMailCommand(mail, block.get() + kCommandLineAt);
  EXPECT_EQ(length, WriteMailCommand(mail, nullptr));
  EXPECT_LT(kCommandLineAt + length, size);
  EXPECT_EQ(block[kCommandLineAt + length], '\0');
  return {block.get() + kCommandLineAt, length};
}

std::string BuiltDocuments(const std::string& paths, const std::string& delimiter) {
  const std::size_t size = DocumentsBlockSize(paths, delimiter);
  const std::unique_ptr<char[]> block(new char[size]);
  const std::size_t length = WriteDocumentsCommand(paths, delimiter, block.get() + kCommandLineAt);
  EXPECT_LT(kCommandLineAt + length, size);
  EXPECT_EQ(block[kCommandLineAt + length], '\0');
  return {block.get() + kCommandLineAt, length};
}

TEST(MapiCommandLine, BytesOfTwoRangesAreEscaped) {
  for (int value = 1; value < 256; ++value) {
    const char byte = static_cast<char>(value);
    const bool escaped = (value >= 0x20 && value <= 0x2F) || (value >= 0x3A && value <= 0x3F);
    char out[3];
    const std::size_t length = PercentEscapeArg({&byte, 1}, out, false);
    char expected[4];
    std::snprintf(expected, sizeof expected, "%%%02X", static_cast<unsigned>(value));
    EXPECT_EQ(std::string(out, length), escaped ? expected : std::string(1, byte)) << value;
    EXPECT_EQ(EscapedLength({&byte, 1}), length) << value;
  }
}

TEST(MapiCommandLine, AMailToBeSentAtOnceHasItsThreeArgumentsAndNoSignature) {
  const Recipient recipients[] = {To(nullptr, "a@b.c")};
  Mail mail = PlainMail();
  mail.subject = "Hello there";
  mail.note = "Dear Sir,\r\n1 < 2";
  mail.recipients = recipients;
  EXPECT_EQ(Built(mail), "sendnow Subject=Hello%20there body=Dear%20Sir%2C\r\n1%20%3C%202 To=a@b%2Ec");
}

TEST(MapiCommandLine, WithoutATextTemplateAndSignatureAreAskedFor) {
  const Recipient recipients[] = {To(nullptr, "a@b")};
  Mail mail = PlainMail();
  mail.mode = kNewMail;
  mail.note = std::nullopt;
  mail.recipients = recipients;
  mail.sign = true;
  EXPECT_EQ(Built(mail), "newmail Subject=s To=a@b template=1 sign=1");
}

TEST(MapiCommandLine, WordsFollowTheMode) {
  const struct {
    unsigned mode;
    const char* word;
  } cases[] = {{0, "sendnow"}, {1, "unsentmail"}, {2, "newmail"}, {3, "newmail"}, {0xFFFFFFFF, "newmail"}};
  for (const auto& row : cases) {
    Mail mail = PlainMail();
    mail.mode = row.mode;
    EXPECT_EQ(Built(mail), std::string(row.word) + " Subject=s body=n") << row.mode;
  }
}

TEST(MapiCommandLine, AMacroStandsBeforeEverythingElse) {
  Mail mail = PlainMail();
  mail.mode = kNewMail;
  mail.macro = "my macro.mac";
  EXPECT_EQ(Built(mail), "newmail Macro=my%20macro%2Emac Subject=s body=n");
}

TEST(MapiCommandLine, EmptySubjectAndTextAreArgumentsToo) {
  Mail mail = PlainMail();
  mail.subject = "";
  mail.note = "";
  EXPECT_EQ(Built(mail), "sendnow Subject= body=");
}

TEST(MapiCommandLine, NothingAtAllIsANewMail) {
  Mail mail;
  mail.read = &ReadAny;
  EXPECT_EQ(Built(mail), "newmail template=1");
}

struct RecipientCase {
  std::vector<Recipient> recipients;
  const char* expected;
  const char* why;
};

TEST(MapiCommandLine, Recipients) {
  const RecipientCase cases[] = {
      {{To("a", nullptr), To("b", nullptr), To("c", nullptr, kCc)},
       " To=a%2C%20b Cc=c",
       "keyword at each new class"},
      {{To("a", nullptr), To("c", nullptr, kCc), To("b", nullptr)},
       " To=a Cc=c To=b",
       "and again when it comes back"},
      {{To("a", nullptr, kBcc), To("b", nullptr, kBcc)}, " Bcc=a%2C%20b", "blind copies"},
      {{To("Jo (Sales)", "SMTP:x")}, " To=%22Jo%20%28Sales%29%22%20%3Cx%3E", "quoted for its parentheses"},
      {{To("Jo", "x")}, " To=Jo%20%3Cx%3E", "plain name"},
      {{To("J<o", "x")}, " To=%22J%3Co%22%20%3Cx%3E", "bracket"},
      {{To("J>o", "x")}, " To=%22J%3Eo%22%20%3Cx%3E", "bracket"},
      {{To("J\"o\"", "x\"y\"")}, " To=Jo%20%3Cxy%3E", "quotes of name and address go"},
      {{To("\"a\"", nullptr)}, " To=%22a%22", "those of a name alone stay"},
      {{To(nullptr, "\"a\"")}, " To=%22a%22", "and those of an address alone"},
      {{To(nullptr, "smtp:x@y"), To(nullptr, "SmTpx@y")},
       " To=x@y%2C%20SmTpx@y",
       "prefix in any case, with colon"},
      {{To("", "x"), To("n", "")}, " To=x%2C%20n", "empty parts count as none"},
      {{To(nullptr, nullptr), To("", ""), To("a", nullptr)}, " To=a", "nobody is passed by"},
      {{To("o", nullptr, 0), To("p", nullptr, 4), To("q", nullptr, 0x10000001)},
       "",
       "classes that are not known"},
      {{To("a", nullptr), To("p", nullptr, 4), To("b", nullptr)}, " To=a%2C%20b", "do not break a list"},
      {{To("\x83\x5C\x81\x7C", "x")}, " To=\x83\x5C\x81\x7C%20%3Cx%3E", "double-byte characters pass whole"},
  };
  for (const RecipientCase& row : cases) {
    Mail mail = PlainMail();
    mail.recipients = row.recipients;
    EXPECT_EQ(Built(mail), std::string("sendnow Subject=s body=n") + row.expected) << row.why;
  }
}

TEST(MapiCommandLine, FilesWithAndWithoutADisplayName) {
  const FileRecord files[] = {
      Attached("C:\\a b.txt", "b.txt"), Attached("C:\\c", nullptr), Attached("C:\\d", ""),
      Attached(nullptr, "lost.txt"),    Attached("", "lost.txt"),   Attached("x*y", "*")};
  Mail mail = PlainMail();
  mail.files = files;
  EXPECT_EQ(Built(mail),
            "sendnow Subject=s body=n Attach=C%3A\\a%20b%2Etxt*b%2Etxt Attach=C%3A\\c Attach=C%3A\\d "
            "Attach=x%2Ay*%2A");
}

TEST(MapiCommandLine, TheBlockHasTheUsualSizeWhileThatIsEnough) {
  Mail mail = PlainMail();
  mail.subject = "a b";  // 5 escaped
  mail.note = "c d";     // 5
  const Recipient recipients[] = {To("n m", "a@b"), To(nullptr, "q")};
  const FileRecord files[] = {Attached("p", "q r"), Attached("p", nullptr), Attached(nullptr, "lost.txt")};
  mail.recipients = recipients;
  mail.files = files;
  EXPECT_EQ(MailBlockSize(mail),
            (5u + 120) + (5 + 10) + (5 + 3 + 5 + 5) + (5 + 1) + (20 + 1 + 1 + 5) + (20 + 1));
  mail.subject = std::nullopt;
  mail.note = std::nullopt;
  mail.recipients = {};
  mail.files = {};
  EXPECT_EQ(MailBlockSize(mail), 100u);
  EXPECT_EQ(DocumentsBlockSize("C:\\x.doc", ""), 8u + (8 + 512) * 2);
}

TEST(MapiCommandLine, TwoThousandNamedRecipientsFit) {
  const std::vector<Recipient> recipients(2000, To("a(b", "SMTP:c@d.e"));
  Mail mail = PlainMail();
  mail.recipients = recipients;
  const std::string line = Built(mail);
  const std::string one = "%22a%28b%22%20%3Cc@d%2Ee%3E";
  std::string expected = "sendnow Subject=s body=n To=" + one;
  for (int i = 1; i < 2000; ++i) expected += "%2C%20" + one;
  EXPECT_EQ(line, expected);
  EXPECT_EQ(MailBlockSize(mail), kCommandLineAt + expected.size() + 1)
      << "the estimate alone would be too small";
}

TEST(MapiCommandLine, Documents) {
  const struct {
    const char* paths;
    const char* delimiter;
    const char* expected;
    const char* why;
  } cases[] = {
      {"C:\\x.doc;C:\\y.doc", ";", " attach=\"C:\\x.doc\" attach=\"C:\\y.doc\"", "split"},
      {"C:\\x.doc;C:\\y.doc", "", " attach=\"C:\\x.doc;C:\\y.doc\"", "no delimiter"},
      {"C:\\x.doc;", ";", " attach=\"C:\\x.doc\" attach=\"\"", "a last, empty one"},
      {";C:\\x", ";", " attach=\"\" attach=\"C:\\x\"", "a first, empty one"},
      {"a b%20;c", ";,", " attach=\"a b%20\" attach=\"c\"", "nothing is escaped; the first character counts"},
      {"\x83\x7C.txt|b", "|", " attach=\"\x83\x7C.txt\" attach=\"b\"", "a trail byte is no delimiter"},
      {"\xE4;b", ";", " attach=\"\xE4\" attach=\"b\"", "a letter of another code page before the delimiter"},
      {"\xE4\x7F"
       "b",
       "\x7F", " attach=\"\xE4\" attach=\"b\"", "0x7F is no trail byte"},
      {"\xE4\xFD"
       "b",
       "\xFD", " attach=\"\xE4\" attach=\"b\"", "nor is 0xFD"},
      {"\x83\x40"
       "b",
       "@",
       " attach=\"\x83\x40"
       "b\"",
       "0x40 is the lowest of them"},
      {"\x83\xFC"
       "b",
       "\xFC",
       " attach=\"\x83\xFC"
       "b\"",
       "0xFC the highest"},
      {"\x83\xFC|b", "|", " attach=\"\x83\xFC\" attach=\"b\"", "and it begins no character itself then"},
      {"a\x81\x42"
       "b",
       "\x81\x42", " attach=\"a\" attach=\"b\"", "a double-byte delimiter"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(BuiltDocuments(row.paths, row.delimiter),
              "newmail" + std::string(row.expected) + " template=1 sign=1")
        << row.why;
  }
}

TEST(MapiCommandLine, FiveThousandDelimitersFit) {
  std::string expected = "newmail";
  for (int i = 0; i <= 5000; ++i) expected += " attach=\"\"";
  expected += " template=1 sign=1";
  EXPECT_EQ(BuiltDocuments(std::string(5000, ';'), ";"), expected);
  EXPECT_EQ(DocumentsBlockSize(std::string(5000, ';'), ";"), kCommandLineAt + expected.size() + 1);
}

TEST(MapiCommandLine, RandomMailsNeverOutgrowTheirBlock) {
  std::mt19937 random(20251121);
  const auto text = [&](std::string* kept) -> char* {
    if (random() % 4 == 0) return nullptr;
    for (std::size_t left = random() % 20; left > 0; --left) *kept += static_cast<char>(1 + random() % 255);
    return kept->data();
  };
  for (int round = 0; round < 2000; ++round) {
    std::vector<std::string> kept(random() % 60 * 2);
    std::vector<Recipient> recipients;
    std::vector<FileRecord> files;
    for (std::size_t i = 0; i + 1 < kept.size(); i += 2) {
      if (random() % 4 != 0) {
        recipients.push_back(
            {0, static_cast<std::uint32_t>(random() % 5), text(&kept[i]), text(&kept[i + 1]), 0, nullptr});
      } else {
        files.push_back({0, 0, 0, text(&kept[i]), text(&kept[i + 1]), nullptr});
      }
    }
    Mail mail = PlainMail();
    mail.mode = random() % 4;
    mail.recipients = recipients;
    mail.files = files;
    mail.sign = random() % 2 == 0;
    Built(mail);
  }
}

TEST(MapiBlocks, TheWaitForTheMutexIsSpreadByProcessId) {
  EXPECT_EQ(CommandLineWaitMs(4237), 13700u);
  EXPECT_EQ(CommandLineWaitMs(100), 10000u);
  EXPECT_EQ(CommandLineWaitMs(0), 10000u);
  EXPECT_EQ(CommandLineWaitMs(99), 19900u);
  EXPECT_EQ(CommandLineWaitMs(0xFFFFFFFF), 19500u);
}

}  // namespace
