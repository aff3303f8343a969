// Names for files on disk: what Windows would refuse, change or take for a device.
#include <gtest/gtest.h>

#include <string>

#include "host/charset/charsets.h"
#include "host/files/file_names.h"
#include "host/folders/mail_exchange.h"
#include "host/mime/message.h"

namespace wrenfold {
namespace {

std::string Clean(std::string_view utf8, std::size_t longest = kLongestFileName) {
  return WideToUtf8(CleanFileName(Utf8ToWide(utf8), longest));
}

TEST(FileNames, BecomeOnesThatAFileCanHave) {
  const struct {
    const char* name;
    const char* expected;
    const char* why;
  } cases[] = {
      {"a b.txt", "a b.txt", "a plain name stays"},
      {"\xE8\xA1\xA8.txt", "\xE8\xA1\xA8.txt", "letters of any script"},
      {".profile", ".profile", "a period in front is part of it"},
      {"a<b>c:d\"e/f\\g|h?i*j", "a_b_c_d_e_f_g_h_i_j", "characters that no name may hold"},
      {"a:stream", "a_stream", "no second stream of a file"},
      {"a\tb\x7F", "a_b_", "control characters"},
      {"a.txt.", "a.txt", "Windows drops a period at the end"},
      {"a.txt .. ", "a.txt", "and blanks, in any order"},
      {" a", "a", "blanks in front"},
      {"..", "", "a folder's name"},
      {" . ", "", "nothing"},
      {"", "", "nothing at all"},
  };
  for (const auto& row : cases) EXPECT_EQ(Clean(row.name), row.expected) << row.why;
}

TEST(FileNames, AreNeverDevices) {
  const struct {
    const char* name;
    const char* expected;
    const char* why;
  } cases[] = {
      {"NUL", "_NUL", "a device"},
      {"con", "_con", "in any case"},
      {"Prn", "_Prn", "in any case"},
      {"AUX.txt", "_AUX.txt", "with an extension"},
      {"nul.tar.gz", "_nul.tar.gz", "with two"},
      {"COM1", "_COM1", "with a number"},
      {"com0.log", "_com0.log", "0 too"},
      {"LPT9.", "_LPT9", "a period that Windows drops"},
      {"COM\xC2\xB9", "_COM\xC2\xB9", "a raised 1"},
      {"lpt\xC2\xB2.a", "_lpt\xC2\xB2.a", "a raised 2"},
      {"COM\xC2\xB3.txt", "_COM\xC2\xB3.txt", "a raised 3"},
      {"NUL ", "_NUL", "a blank that Windows drops"},
      {"CON .txt", "_CON .txt", "a blank in front of the extension"},
      {" AUX", "_AUX", "a device once the blank in front is gone"},
      {"CONIN$", "_CONIN$", "the console's input"},
      {"conout$.txt", "_conout$.txt", "its output"},
      {"NUL:", "NUL_", "no device once the colon is gone"},
      {"COM10", "COM10", "two digits are none"},
      {"COM", "COM", "no digit"},
      {"CONSOLE", "CONSOLE", "a longer word"},
      {"a.NUL", "a.NUL", "as an extension"},
      {"COM\xC2\xB4", "COM\xC2\xB4", "no digit"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(Clean(row.name), row.expected) << row.why;
    EXPECT_FALSE(IsDeviceName(CleanFileName(Utf8ToWide(row.name)))) << row.name;
  }
}

TEST(FileNames, AreShortenedInFrontOfTheirExtension) {
  const std::string smile = "\xF0\x9F\x98\x80";  // two units
  const struct {
    std::string name;
    std::size_t longest;
    std::string expected;
    const char* why;
  } cases[] = {
      {std::string(300, 'x') + ".txt", 200, std::string(196, 'x') + ".txt", "the extension stays"},
      {"v1." + std::string(300, 'x'), 60, "v1." + std::string(57, 'x'), "too long for an extension"},
      {std::string(9, 'x') + smile, 10, std::string(9, 'x'), "no half character at the end"},
      {"xxxxx" + smile + ".txt", 10, "xxxxx.txt", "nor in front of the extension"},
      {std::string(9, 'x') + ". yyyyyyyyyyyyyyyyyy", 11, std::string(9, 'x'),
       "what the cut leaves at the end goes too"},
      {"NUL" + std::string(300, ' ') + "x", 60, "_NUL", "a device once it is cut"},
      {"NUL." + std::string(60, 'x'), 60, "_NUL." + std::string(55, 'x'), "a device as long as it may be"},
  };
  for (const auto& row : cases) EXPECT_EQ(Clean(row.name, row.longest), row.expected) << row.why;
}

TEST(FileNames, TheLastComponentIsWhatStandsBehindTheLastSlash) {
  EXPECT_EQ(LastComponent(u"a/b\\c"), u"c");
  EXPECT_EQ(LastComponent(u"c"), u"c");
  EXPECT_EQ(LastComponent(u"a/"), u"");
}

// All whom a mail can suggest a name to use the one cleaner.
TEST(FileNames, OfAttachmentsAndExportsAreCleaned) {
  const HostMessage message = MakeHostMessage(
      "Content-Type: multipart/mixed; boundary=b\n\n--b\nContent-Disposition: attachment; "
      "filename=\"x/NUL\"\n\n"
      "--b\nContent-Disposition: attachment; filename=\"AUX.txt. \"\n\n"
      "--b\nContent-Type: message/rfc822\n\nSubject: COM1\n\n\n--b--\n");
  ASSERT_EQ(message.attachments.size(), 3u);
  EXPECT_EQ(message.attachments[0].file_name, "_NUL");
  EXPECT_EQ(message.attachments[1].file_name, "_AUX.txt");
  EXPECT_EQ(message.attachments[2].file_name, "_COM1.eml");
  ExportedMail mail;
  mail.subject = "CON";
  mail.file = "aux.old";
  EXPECT_EQ(ExportName(mail, ExportNaming::kSubject, 0), "_CON");
  EXPECT_EQ(ExportName(mail, ExportNaming::kFileName, 0), "_aux.old");
}

}  // namespace
}  // namespace wrenfold
