// Command lines of the OpenPGP programs, byte for byte, and the messages that macros get to see.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "src/openpgp/command_line.h"
#include "src/openpgp/info_lines.h"

namespace wfinfo {
namespace {

// Measures, writes, and checks that both agree and nothing is written behind the end.
std::string CommandLine(const PgpCommand& command) {
  const std::size_t length = WriteCommandLine(command, nullptr);
  std::string text(length + 3, '#');
  EXPECT_EQ(WriteCommandLine(command, text.data()), length);
  EXPECT_EQ(text.substr(length), std::string("\0##", 3));
  return text.substr(0, length);
}

struct CommandCase {
  bool gnupg;
  PgpOperation operation;
  const char* expected;
};

TEST(PgpCommandLine, IsExactForEachProgramAndOperation) {
  const CommandCase cases[] = {
      {false, PgpOperation::kEncrypt, "pgp +batchmode -o $PgpOut.asc -ea $PgpIn.asc  a@x  b@y "},
      {false, PgpOperation::kSign,
       "pgp +batchmode -o $PgpOut.asc -sat -u\"me <m@x>\" -z\"open it\" $PgpIn.asc "},
      {false, PgpOperation::kEncryptAndSign,
       "pgp +batchmode -o $PgpOut.asc -esa -u\"me <m@x>\" -z\"open it\" $PgpIn.asc  a@x  b@y "},
      {false, PgpOperation::kDecrypt, "pgp +batchmode -o $PgpOut.asc -d $PgpIn.asc -z\"open it\""},
      {false, PgpOperation::kVerify, "pgp +batchmode -o $PgpOut.asc -d $PgpIn.asc"},
      {false, PgpOperation::kVerifyDetached, "pgp +batchmode -o $PgpOut.asc -d $PgpIn.asc"},
      {true, PgpOperation::kEncrypt,
       "gpg2.exe --batch --yes -v -o $PgpOut.asc -ea -r\"a@x\" -r\"b@y\" $PgpIn.asc"},
      {true, PgpOperation::kSign,
       "gpg2.exe --batch --yes --force-v3-sigs --passphrase-fd 0 -o $PgpOut.asc -u\"me <m@x>\" -sat "
       "--clearsign $PgpIn.asc "},
      {true, PgpOperation::kEncryptAndSign,
       "gpg2.exe --batch --yes --force-v3-sigs --passphrase-fd 0 -o $PgpOut.asc  -u\"me <m@x>\" -esa "
       "-r\"a@x\" "
       "-r\"b@y\" $PgpIn.asc"},
      {true, PgpOperation::kDecrypt,
       "gpg2.exe --batch --yes --no-utf8-strings --charset iso-8859-1 --passphrase-fd 0 -o $PgpOut.asc -d "
       "$PgpIn.asc"},
      {true, PgpOperation::kVerify,
       "gpg2.exe --batch --yes --no-utf8-strings --charset iso-8859-1 -o $PgpOut.asc --verify-files "
       "$PgpIn.asc"},
      {true, PgpOperation::kVerifyDetached,
       "gpg2.exe --batch --yes --no-utf8-strings --charset iso-8859-1 -o $PgpOut.asc --verify $PgpIn.asc "
       "$PgpIn"},
  };
  for (const CommandCase& c : cases) {
    EXPECT_EQ(CommandLine({c.gnupg, c.operation, "gpg2.exe", " a@x  b@y ", "me <m@x>", "open it"}),
              c.expected);
  }
}

TEST(PgpCommandLine, HasARecipientOptionForEachWord) {
  const struct {
    const char* recipients;
    const char* options;
    const char* why;
  } cases[] = {
      {"a  b", " -r\"a\" -r\"b\"", "two blanks are one gap"},
      {"  a", " -r\"a\"", "leading blanks are skipped"},
      {"a ", " -r\"a\"", "and final ones"},
      {"a\tb\r\nc", " -r\"a\" -r\"b\" -r\"c\"", "every code up to 32 ends a word"},
      {"", "", "nobody"},
      {" ", "", "nobody"},
      {"\x93\xFA\x96{ \xB1", " -r\"\x93\xFA\x96{\" -r\"\xB1\"", "bytes above 127 are part of words"},
      {"a\"b", " -r\"a\"b\"", "quotes stay as they are"},
      {"a!b@x", " -r\"a!b@x\"", "the code behind the blank is part of a word"},
      {"%s %i", " -r\"%s\" -r\"%i\"", "and so do percent signs"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CommandLine({true, PgpOperation::kEncrypt, "gpg.exe", c.recipients, {}, {}}),
              std::string("gpg.exe --batch --yes -v -o $PgpOut.asc -ea") + c.options + " $PgpIn.asc")
        << c.why;
  }
}

TEST(PgpCommandLine, ReadsNothingBehindTheRecipients) {
  for (const std::string_view recipients : {"a@x", "a@x "}) {
    const std::unique_ptr<char[]> exact(new char[recipients.size()]);
    recipients.copy(exact.get(), recipients.size());
    EXPECT_EQ(CommandLine({true, PgpOperation::kEncrypt, "gpg", {exact.get(), recipients.size()}, {}, {}}),
              "gpg --batch --yes -v -o $PgpOut.asc -ea -r\"a@x\" $PgpIn.asc");
  }
}

TEST(PgpCommandLine, KeepsPercentSignsOfTheCallersTexts) {
  EXPECT_EQ(CommandLine({false, PgpOperation::kSign, {}, {}, "%p", "%s%o"}),
            "pgp +batchmode -o $PgpOut.asc -sat -u\"%p\" -z\"%s%o\" $PgpIn.asc ");
}

TEST(PgpCommandLine, NamesTheUsualPlaceOnTheDriveOfWindows) {
  const std::string_view command = "pgp +batchmode -o x";
  const std::size_t length = WriteInstalledCommandLine("D:\\WINDOWS", command, nullptr);
  std::string text(length + 1, '#');
  EXPECT_EQ(WriteInstalledCommandLine("D:\\WINDOWS", command, text.data()), length);
  EXPECT_STREQ(text.c_str(), "\"D:\\Program files\\Network Associates\\PGPNT\\pgp.exe\" +batchmode -o x");
  const std::string without(WriteInstalledCommandLine("D:\\WINDOWS", "pg", nullptr), '#');
  EXPECT_EQ(length - without.size(), command.size() - 3)
      << "a command shorter than its leading word adds nothing";
}

// --- Messages ------------------------------------------------------------------------------------------

std::string Shown(std::string text) {
  const std::size_t length = RemoveTemporaryFileLines(text.data());
  EXPECT_EQ(text.c_str()[length], '\0') << "it is terminated where it ends";
  text.resize(length);
  return text;
}

TEST(InfoLines, WithoutThoseThatNameATemporaryFile) {
  const struct {
    const char* text;
    const char* shown;
    const char* why;
  } cases[] = {
      {"", "", "nothing"},
      {"gpg: good\r\n", "gpg: good\r\n", "an innocent line"},
      {"a\r\ngpg: $PgpIn.asc: x\r\nb\r\n", "a\r\nb\r\n", "the input"},
      {"a\n`$PgpIn' is data\nb", "a\nb", "the signed data"},
      {"a\rto $PgpOut.asc\rb", "a\rb", "the output, lone CR"},
      {"$PgpIn", "", "the only line"},
      {"$PgpIn\n", "", "the only line with its end"},
      {"x\n$PgpOut.asc", "x\n", "the last line without an end"},
      {"$PgpErr.$$$\n$PgpOut\n$pgpin\n", "$PgpErr.$$$\n$PgpOut\n$pgpin\n", "other names, and other case"},
      {"\n\n$PgpIn\n\n", "\n\n\n", "empty lines stay"},
      {"a\n\r$PgpIn\nb", "a\n\rb", "LF CR are two line ends"},
      {"$PgpIn\x1A\x80\x80\x0D"
       "b\nc",
       "c", "a CR inside an escape ends no line"},
  };
  for (const auto& c : cases) EXPECT_EQ(Shown(c.text), c.shown) << c.why;
}

// The same by the slow way.
std::string ReferenceShown(const std::string& text) {
  std::string shown;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = text.find_first_of("\r\n", at);
    if (end == text.npos) end = text.size();
    std::size_t next = end;
    if (next < text.size() && text[next] == '\r') ++next;
    if (next < text.size() && text[next] == '\n') ++next;
    const std::string line = text.substr(at, end - at);
    if (line.find("$PgpIn") == line.npos && line.find("$PgpOut.asc") == line.npos)
      shown += text.substr(at, next - at);
    at = next;
  }
  return shown;
}

TEST(InfoLines, AgreeWithASlowReference) {
  std::mt19937 random(20);
  const std::vector<std::string> pieces = {"\r",          "\n",      "\r\n",    "$PgpIn", ".asc",
                                           "$PgpOut.asc", "$PgpOut", "gpg: ok", " "};
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    for (std::size_t n = random() % 20; n > 0; --n) text += pieces[random() % pieces.size()];
    EXPECT_EQ(Shown(text), ReferenceShown(text)) << testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace wfinfo
