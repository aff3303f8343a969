// What help finds by words, names and signs.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/library/export_help.h"
#include "host/library/help_search.h"
#include "host/library/help_synonyms.h"
#include "host/library/help_words.h"
#include "host/library/language_help.h"
#include "host/macro/syntax.h"
#include "host/session/prompt_help.h"
#include "src/catalogue/rows.h"

namespace wrenfold {
namespace {

using wfinfo::catalogue::FindRow;

constexpr HelpEntry kHostFunctions[] = {
    {"HostReason", "HostReason()", "Why the last call failed."},
    {"HostBody", "HostBody()", "Text of the mail."},
    {"HostSetBody", "HostSetBody(text)", "Gives the mail another text."},
    {"HostHtml", "HostHtml()", "HTML of the mail."},
    {"HostSetHtml", "HostSetHtml(html)", "Gives it other HTML."},
    {"HostAttachments", "HostAttachments()", "Names of the attachments."},
    {"HostAddress", "HostAddress(name, address)", "One recipient."},
    {"HostDecode", "HostDecode(bytes, charset)", "Text of bytes."},
};

std::vector<HelpEntry> Entries() {
  std::vector<HelpEntry> entries(std::begin(kHostFunctions), std::end(kHostFunctions));
  entries.insert(entries.end(), PromptWordHelp().begin(), PromptWordHelp().end());
  return entries;
}

std::string Help(std::string_view asked) { return HelpFor(asked, Entries()).value_or("nothing"); }

// Where in `text` a row of `form` begins, which may be in its middle; npos when nowhere.
std::size_t RowOf(const std::string& text, std::string_view form) {
  return ("\n" + text).find("\n" + std::string(form));
}

std::size_t RowCount(const std::string& text) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find("\n    ", at)) != std::string::npos; ++at) ++count;
  return count;
}

TEST(HelpSearch, BeginsWithWhatAUserMeans) {
  const struct {
    std::string_view asked;
    std::string_view first;
  } kCases[] = {
      {"sender", "From()"},
      {"author", "From()"},
      {"error", "HostReason()"},
      {"mark", "SwitchMark()"},
      {"folder", "SelectFolder("},
      {"contains", "IfInclude("},
      {"InStr", "IfInclude("},
      {"concat", "or  and  =="},
      {"substring", "MidStr("},
      {"uppercase", "ToUpper("},
      {"newline", "\"a \\\"text\\\"\\n\""},
      {"boolean", "1 and 0"},
      {"false", "1 and 0"},
      {"loop", "for name in"},
      {"list", "[1, \"a\"]"},
      {"table", "{\"a\": 1}"},
      {"length", "len(text)"},
      {"unsubscribe", "RootHeader("},
      {"flagged", "SwitchMark()"},
      {"important", "SwitchMark()"},
      {"star", "SwitchMark()"},
      {"newsletter", "RootHeader("},
      {"list-id", "RootHeader("},
      {"SelectMail", "SetMailIndex("},
      {"select mail", "SetMailIndex("},
      {"copy mail", "Copy("},
      {"delete mail", "Delete()"},
      {"mark mail", "SwitchMark()"},
      {"mail mark", "SwitchMark()"},
      {"reply body", "HostSetBody("},
      {"own text", "HostSetBody("},
      {"insert text", "HostSetBody("},
      {"message box", "Bypass_MessageBox("},
      {"save to file", "SaveStringToFile("},
      {"comment", "# text"},
      {"try", "HostReason()"},
      {"catch", "HostReason()"},
      {"exception", "HostReason()"},
      {"set subject", "SetHeader("},
      {"create folder", "MakeFolder("},
      {"how do I create a folder", "MakeFolder("},
      {"count mails", "MailCount()"},
      {"mail count folder", "GetFolderMailCount("},
      {"account sender address", "AccountFrom("},
      {"メール", "MailCount()"},
      {"削除", "Delete()"},
      {"メールを削除", "Delete()"},
      {"フォルダー", "SelectFolder("},
      {"返信", "MakeReply("},
      {"宛先", "SetHeader("},
      {"件名", "Subject()"},
      {"添付", "AddAttach("},
      {"差出人", "From()"},
  };
  for (const auto& c : kCases) {
    const std::string text = Help(c.asked);
    EXPECT_EQ(RowOf(text, c.first), 0u) << c.asked << "\n" << text;
    EXPECT_LE(RowCount(text), 12u) << c.asked;
  }
}

TEST(HelpSearch, FindsWordsInAnyOrderAndNeverInsideOfOthers) {
  const auto without_end = [](std::string text) { return text.substr(0, text.find("\nand ")); };
  EXPECT_EQ(without_end(Help("folder mail count")), without_end(Help("mail count folder")));
  for (const std::string_view asked : {"star", "try", "table", "author"}) {
    const std::string text = Help("all " + std::string(asked));
    for (const std::string_view form :
         {"GetSenderCountry", "GetCountryFullName", "StartReceive", "SMIMEVerify("})
      EXPECT_EQ(RowOf(text, form), std::string::npos) << asked;
  }
  const std::string flag = Help("colour");
  EXPECT_EQ(RowOf(flag, "SetMailColor("), 0u);
  const std::string begun = Help("attachm");
  EXPECT_NE(RowOf(begun, "HostAttachments("), std::string::npos) << "the beginning of a word\n" << begun;
  EXPECT_EQ(Help("zzzz"), "nothing");
  EXPECT_EQ(Help("HomeDirr"), "nothing") << "a name has all its parts";
}

TEST(HelpSearch, ShowsTheBestAndTellsHowManyMore) {
  const std::string text = Help("mail");
  EXPECT_EQ(RowCount(text), 12u);
  EXPECT_NE(text.find(" more: help all mail\n"), std::string::npos) << text;
  const std::string all = Help("all mail");
  EXPECT_GT(RowCount(all), 100u);
  EXPECT_EQ(all.find(" more: "), std::string::npos);
  EXPECT_EQ(all.substr(0, 200), text.substr(0, 200));
}

TEST(HelpSearch, TakesNamesInAnyCaseAndAsCalls) {
  const std::string entry = HelpText(*FindRow("RootHeader"));
  for (const std::string_view asked :
       {"RootHeader", "RootHeader()", "RootHeader(\"x\")", "RootHeader (\"x\")"})
    EXPECT_EQ(Help(asked), entry) << asked;
  for (const std::string_view asked : {"rootheader", "ROOTHEADER", "rootheader(\"x\")"})
    EXPECT_EQ(Help(asked).substr(0, entry.size()), entry) << asked;
  EXPECT_EQ(Help("hostreason()"), "HostReason()\nWhy the last call failed.\n");
  EXPECT_EQ(Help("IF"), Help("if"));
  EXPECT_EQ(Help("Delete"), HelpText(*FindRow("Delete")));
  EXPECT_EQ(Help("delete"), HelpText(*FindRow("Delete")) + "help all delete finds more\n");
}

TEST(HelpSearch, KnowsThePromptsWordsAndWhatElseHasThem) {
  for (const std::string_view word : {"vars", "quit", "run", "open", "mails", "folders", "help", "--macro"}) {
    const auto entry = std::find_if(PromptWordHelp().begin(), PromptWordHelp().end(),
                                    [word](const HelpEntry& e) { return e.name == word; });
    ASSERT_NE(entry, PromptWordHelp().end()) << word;
    EXPECT_TRUE(Help(word).starts_with(std::string(entry->form) + "\n" + std::string(entry->doc) + "\n"))
        << word;
  }
  for (const std::string_view word : {"mails", "open", "run", "folders"}) {
    EXPECT_EQ(RowCount(Help(word)), 0u) << "nothing but the word: " << Help(word);
    EXPECT_NE(Help(word).find("\nhelp all " + std::string(word) + " finds exports\n"), std::string::npos)
        << word;
  }
  EXPECT_NE(RowOf(Help("all folders"), "SelectFolder("), std::string::npos);
  EXPECT_NE(RowOf(Help("all mails"), "MailCount()"), std::string::npos);
  EXPECT_NE(RowOf(Help("all quit"), "Exit()"), std::string::npos);
}

TEST(HelpSearch, TellsWhoSendsACodeOrMenuCommand) {
  for (const std::string_view asked : {"44", "code 44", "Code 44"}) {
    EXPECT_NE(RowOf(Help(asked), "AddHeader(name, value)\n"), std::string::npos) << asked << "\n"
                                                                                 << Help(asked);
    EXPECT_NE(RowOf(Help(asked), "AddHeaderIf(name, value)\n"), std::string::npos) << asked;
    EXPECT_EQ(RowCount(Help(asked)), 2u) << asked;
  }
  for (const std::string_view asked : {"40014", "code 40014", "command 40014", "menu command 40014"}) {
    EXPECT_NE(RowOf(Help(asked), "FindUp()\n"), std::string::npos) << asked << "\n" << Help(asked);
    EXPECT_EQ(RowCount(Help(asked)), 1u) << asked;
  }
  EXPECT_NE(RowOf(Help("40002"), "NewMail()\n"), std::string::npos) << "a command without code";
  EXPECT_EQ(Help("99999"), "no export sends code or menu command 99999\n");
}

TEST(HelpSearch, TakesAFamilyAsItIsTitled) {
  EXPECT_NE(RowOf(Help("Folders"), "MakeFolder("), std::string::npos) << Help("Folders");
  EXPECT_EQ(RowOf(Help("folders"), "MakeFolder("), std::string::npos) << "the word of the prompt";
  for (const wfinfo::catalogue::Row& row : wfinfo::catalogue::Rows()) {
    if (FindRow(row.family) != nullptr) continue;
    EXPECT_NE(RowOf(Help(row.family), CallForm(row) + "\n    "), std::string::npos) << row.family << row.name;
  }
}

TEST(HelpSearch, ExplainsTheExamples) {
  for (const std::string_view part : {"#> ", "#< ", "FILE", "Run with:", "Needs:", "--mail samples/mails"})
    EXPECT_NE(Help("examples").find(part), std::string::npos) << part;
  EXPECT_NE(Help("terms").find("help examples"), std::string::npos);
}

TEST(HelpSearch, NeedsNoOtherPage) {
  for (const wfinfo::catalogue::Row& row : wfinfo::catalogue::Rows())
    EXPECT_EQ(HelpText(row).find("docs/"), std::string::npos) << row.name;
  const struct {
    std::string_view name;
    std::string_view part;
  } kCases[] = {
      {"SetFindPack", "any header's name, Body, or Any"},
      {"FormatDate", "D day"},
      {"FormatDateDefault1601", "an \"o\" in front"},
      {"FormatDateSub", "EM and EFM month"},
      {"CurrentDate", "means something to FormatDate alone"},
      {"CsvExport", "cc, subject, size (bytes), folder, file and unread"},
      {"DoGrep", "drafts too"},
      {"StartDoGrep2", "drafts too"},
      {"CsvExport", "drafts too"},
  };
  for (const auto& c : kCases)
    EXPECT_NE(HelpText(*FindRow(c.name)).find(c.part), std::string::npos)
        << c.name << HelpText(*FindRow(c.name));
  for (const std::string_view name :
       {"SetHeader", "AddHeader", "AddHeaderIf", "SetHeader2", "DeleteHeader", "DeleteHeader2",
        "DeleteHeaderUnited", "SetHeaderUnited", "SetOrDeleteHeader"})
    EXPECT_NE(HelpText(*FindRow(name)).find("in memory until AlterSave"), std::string::npos) << name;
}

TEST(HelpSearch, AnswersSigns) {
  const struct {
    std::string_view asked;
    std::string_view part;
  } kCases[] = {
      {"=", "name = expression\nGives"},
      {"(", "Name(a, b)\nCalls"},
      {"&", "there is no & in the language; + joins texts"},
      {"&&", "there is no && in the language; write and"},
      {"!", "there is no ! in the language; write not"},
      {"||", "write or"},
      {"+=", "name = expression\nGives"},
      {"==", "From weak to strong."},
      {"%", "From weak to strong."},
      {"[", "Values in a row"},
      {"{}", "A value for each name"},
      {"#", "A comment goes"},
      {"\\n", "Escapes"},
      {"'", "A text stands in double quotes"},
  };
  for (const auto& c : kCases)
    EXPECT_NE(Help(c.asked).find(c.part), std::string::npos) << c.asked << Help(c.asked);
}

TEST(HelpSearch, HasPages) {
  const std::string language = Help("language");
  for (const HelpEntry& entry : LanguageHelp())
    EXPECT_NE(language.find("\n  " + std::string(entry.form) + "  "), std::string::npos) << entry.form;
  EXPECT_TRUE(language.ends_with(LanguageExample()));
  const std::string functions = Help("functions");
  for (const HelpEntry& entry : kHostFunctions)
    EXPECT_NE(functions.find("\n  " + std::string(entry.form) + "  "), std::string::npos) << entry.form;
  EXPECT_EQ(functions.find("quit"), std::string::npos);
  for (const std::string_view word : {"help language", "help functions", "HostReason()", "quit", "run FILE",
                                      "folders", "vars", "open N", "--macro"})
    EXPECT_NE(PromptHelp().find(word), std::string_view::npos) << word;
}

TEST(HelpSearch, ShowsAMacroOfEightLinesThatCanBeRead) {
  const auto parsed =
      macro::Parse(LanguageExample(), {[](std::string_view text) { return std::string(text); }});
  EXPECT_TRUE(std::holds_alternative<macro::Program>(parsed));
  EXPECT_EQ(std::count(LanguageExample().begin(), LanguageExample().end(), '\n'), 8);
}

TEST(HelpSearch, SynonymsNameWhatThereIs) {
  const std::vector<HelpEntry> others = Entries();
  const std::vector<HelpEntry> language = LanguageHelp();
  const auto has = [](const std::vector<HelpEntry>& entries, std::string_view name) {
    return std::any_of(entries.begin(), entries.end(), [name](const HelpEntry& e) { return e.name == name; });
  };
  for (const Synonym& row : Synonyms()) {
    std::string_view names = row.names;
    while (!names.empty()) {
      const std::string_view name = names.substr(0, names.find(' '));
      EXPECT_TRUE(FindRow(name) != nullptr || has(others, name) || has(language, name)) << name;
      names.remove_prefix(std::min(names.size(), name.size() + 1));
    }
  }
}

TEST(HelpSearch, ComparesWordsWithoutTheirEndings) {
  EXPECT_EQ(NameWords("PGPDecrypt_SetSizes"), (std::vector<std::string>{"pgp", "decrypt", "set", "size"}));
  EXPECT_EQ(TextWords("Marked, the folders' NAMES."),
            (std::vector<std::string>{"mark", "the", "folder", "name"}));
  for (const auto& [word, stem] :
       {std::pair("replies", "repli"), std::pair("reply", "repli"), std::pair("address", "address"),
        std::pair("addresses", "address"), std::pair("string", "string"), std::pair("messages", "messag"),
        std::pair("message", "messag")})
    EXPECT_EQ(WithoutEnding(word), stem);
}

}  // namespace
}  // namespace wrenfold
