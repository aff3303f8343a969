// The catalogue names each word that an export takes.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "src/catalogue/rows.h"
#include "src/commands/mail_words.h"
#include "src/commands/transfer_words.h"

namespace wfinfo {
namespace {

// The words of the first parameter that has any, with a comma or blank around each.
std::string Words(std::string_view name, std::size_t parameter) {
  std::string words = " ";
  for (const char c : catalogue::FindRow(name)->parameters[parameter].doc)
    words += c == ',' || c == ':' || c == '"' ? ' ' : c;
  return words + " ";
}

TEST(KeywordDocs, NameEachFlagOfAMail) {
  for (const MailFlagName& flag : kMailFlagNames) {
    const std::string word = " " + std::string(flag.word) + " ";
    EXPECT_NE(Words("GetMailFlag", 0).find(word), std::string::npos) << flag.word;
    EXPECT_EQ(Words("SetMailFlag", 0).find(word) != std::string::npos, flag.writable) << flag.word;
  }
}

TEST(KeywordDocs, NameEachOptionOfTheDuplicateCheck) {
  for (const Keyword& option : kDuplicationOptionRows) {
    EXPECT_NE(Words("SetDuplicationCheckOption", 0).find(" " + std::string(option.word) + " "),
              std::string::npos)
        << option.word;
  }
  for (const Keyword& mode : kDuplicationModeRows) {
    EXPECT_NE(Words("CheckDuplication", 0).find(" " + std::string(mode.word) + " "), std::string::npos)
        << mode.word;
  }
}

}  // namespace
}  // namespace wfinfo
