// The text of a parameter that takes words lists all of them, and no other.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "src/catalogue/rows.h"
#include "src/commands/folder_words.h"
#include "src/commands/log_words.h"
#include "src/commands/mail_words.h"
#include "src/commands/navigation_words.h"
#include "src/commands/reply_words.h"
#include "src/commands/template_words.h"
#include "src/commands/transfer_words.h"
#include "src/text/ascii.h"
#include "src/timers/button_words.h"

namespace wfinfo::catalogue {
namespace {

using Words = std::vector<std::string>;

Words WordsOf(const KeywordTable& table, std::string_view prefix = "") {
  Words words;
  for (const Keyword& row : table.rows) words.push_back(std::string(prefix).append(row.word));
  return words;
}

Words ExportTypeWords() {
  Words words = WordsOf(kExportTypes);
  for (const std::string& word : WordsOf(kExportPrefixes)) words.push_back(word);
  // The second prefix stands in the text once, for all names.
  for (const std::string& word : WordsOf(kExportNamings, kExportPrefixRows[0].word)) words.push_back(word);
  return words;
}

Words MailFlags(bool writable_only) {
  Words words;
  for (const MailFlagName& row : kMailFlagNames) {
    if (row.writable || !writable_only) words.emplace_back(row.word);
  }
  return words;
}

struct Taking {
  std::string_view name;
  std::string_view parameter;
  Words words;
};

std::vector<Taking> TakingWords() {
  return {
      {"NextPrevCustom", "target", WordsOf(kNavigationTargets)},
      {"NextPrevCustom", "direction", WordsOf(kDirections)},
      {"NextPrevCustom", "unit", WordsOf(kNavigationUnits)},
      {"NextPrevCustom", "roll", WordsOf(kRollModes)},
      {"NextUnreadCustom", "roll", WordsOf(kRollModes)},
      {"PrevUnreadCustom", "roll", WordsOf(kRollModes)},
      {"MakeReply", "multi", WordsOf(kMultiReplies)},
      {"MakeReplyCustom", "kind", WordsOf(kReplyKinds)},
      {"MakeReplyCustom", "attach", WordsOf(kReplyAttachments)},
      {"MakeReplyCustom", "multi", WordsOf(kMultiReplies)},
      {"MakeResentForward", "mode", WordsOf(kResendModes)},
      {"MakeResentForward", "log", {"log"}},
      {"MakeResentForward", "bcc", {"bcc"}},
      {"OpenLog", "kind", WordsOf(kLogKinds)},
      {"Import", "type", WordsOf(kImportTypes)},
      {"Import", "recv", WordsOf(kImportReceived)},
      {"Import", "log", WordsOf(kImportLog)},
      {"Import", "time", WordsOf(kImportTimes)},
      {"Import", "mdn", WordsOf(kImportReceipt)},
      {"Import", "spam", WordsOf(kImportFilter)},
      {"Export", "type", ExportTypeWords()},
      {"Export", "encode", WordsOf(kExportEncodings)},
      {"Export", "fold", WordsOf(kExportFolding)},
      {"Export", "write", WordsOf(kExportWrites)},
      {"Export", "stamp", WordsOf(kExportStamp)},
      {"CheckDuplication", "mode", WordsOf(kDuplicationModes)},
      {"SetDuplicationCheckOption", "options", WordsOf(kDuplicationOptions)},
      {"GetMailFlag", "name", MailFlags(false)},
      {"SetMailFlag", "name", MailFlags(true)},
      {"SetCharSet", "charset", WordsOf(kCharSets)},
      {"GetTemplateName", "kind", WordsOf(kTemplateKinds)},
      {"LoadTemplate", "kind", WordsOf(kTemplateKinds)},
      {"GetTemplateAssociatedSign", "kind", WordsOf(kTemplateKinds)},
      {"GetFolderMailCount", "kind", WordsOf(kMailCounts)},
      {"SetAutoPushTimer", "button", WordsOf(kButtonWords)},
      {"SetAutoPushTimerMilli", "button", WordsOf(kButtonWords)},
      {"SetAutoPushTimerEver", "button", WordsOf(kButtonWords)},
  };
}

bool IsOfAWord(char letter) { return IsLetter(letter) || IsDigit(letter) || letter == '_' || letter == '-'; }

bool Lists(std::string_view doc, std::string_view word) {
  if (word.empty())
    return doc.find("\"\"") != std::string_view::npos || doc.find("empty") != std::string_view::npos;
  for (std::size_t at = doc.find(word); at != std::string_view::npos; at = doc.find(word, at + 1)) {
    const std::size_t end = at + word.size();
    const bool begins = at == 0 || !IsOfAWord(doc[at - 1]);
    if (begins && (word.back() == '-' || end == doc.size() || !IsOfAWord(doc[end]))) return true;
  }
  return false;
}

// The words between quotation marks.
Words Quoted(std::string_view doc) {
  Words words;
  for (std::size_t at = doc.find('"'); at != std::string_view::npos;) {
    const std::size_t end = doc.find('"', at + 1);
    if (end == std::string_view::npos) break;
    const std::string_view word = doc.substr(at + 1, end - at - 1);
    if (std::all_of(word.begin(), word.end(), IsOfAWord)) words.emplace_back(word);
    at = doc.find('"', end + 1);
  }
  return words;
}

std::string_view DocOfParameter(const Taking& taking) {
  const Row* const row = FindRow(taking.name);
  if (row == nullptr) return "";
  for (const Parameter& parameter : row->parameters) {
    if (parameter.name == taking.parameter) return parameter.doc;
  }
  return "";
}

TEST(KeywordDocs, ListAllWordsOfTheirTables) {
  for (const Taking& taking : TakingWords()) {
    const std::string_view doc = DocOfParameter(taking);
    for (const std::string& word : taking.words)
      EXPECT_TRUE(Lists(doc, word)) << taking.name << " " << taking.parameter << " lacks " << word << ": "
                                    << doc;
  }
}

TEST(KeywordDocs, QuoteNoWordThatIsInNoTable) {
  for (const Taking& taking : TakingWords()) {
    for (const std::string& word : Quoted(DocOfParameter(taking))) {
      const bool known = word.empty() || std::ranges::find(taking.words, word) != taking.words.end();
      EXPECT_TRUE(known) << taking.name << " " << taking.parameter << " has " << word;
    }
  }
}

TEST(KeywordDocs, OfSetMailFlagLeaveOutWhatCannotBeSet) {
  const std::string_view doc = DocOfParameter({"SetMailFlag", "name", {}});
  for (const MailFlagName& flag : kMailFlagNames)
    EXPECT_EQ(Lists(doc, flag.word), flag.writable) << flag.word;
}

TEST(KeywordDocs, CountAWordOnlyWhereItStandsAlone) {
  const struct {
    std::string_view doc;
    std::string_view word;
    bool expected;
    const char* why;
  } cases[] = {
      {"mark, unread", "mark", true, "the first"},
      {"unmark", "mark", false, "the end of another"},
      {"AllFromWithMe", "AllFrom", false, "the beginning of another"},
      {"noencode-x encode", "encode", true, "behind one that holds it"},
      {"\"emltxt-\" in front", "emltxt-", true, "a prefix"},
      {"\"eml-date\"", "eml-", true, "a prefix with its name"},
      {"\"\": none", "", true, "the empty word"},
      {"none", "", false, "no empty word"},
  };
  for (const auto& c : cases) EXPECT_EQ(Lists(c.doc, c.word), c.expected) << c.why;
}

}  // namespace
}  // namespace wfinfo::catalogue
