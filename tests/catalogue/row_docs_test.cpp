// The texts of the rows tell a macro author what comes back: the result, and what a failure gives.
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <string_view>

#include "src/catalogue/rows.h"

namespace wfinfo::catalogue {
namespace {

struct Exempt {
  std::string_view name;
  const char* why;
};
constexpr Exempt kCannotFail[] = {
    {"Bypass_GetLastError", "the number is the reason of another failure"},
    {"Bypass_GetCurrentProcessId", "the system's page knows no failure"},
    {"Bypass_GetCurrentThreadId", "the system's page knows no failure"},
    {"Bypass_GetLastActivePopup", "the system's page tells no failure: the window itself stands for none"},
};

bool CannotFail(std::string_view name) {
  for (const Exempt& exempt : kCannotFail) {
    if (exempt.name == name) return true;
  }
  return false;
}

bool Has(const std::string& text, const std::regex& pattern) { return std::regex_search(text, pattern); }

bool TellsTheFailure(const std::string& doc) {
  static const std::regex kValue(R"re((^|[^\w.])(0|null|-1)([^\w]|$)|""|[Aa]lways)re");
  return Has(doc, kValue);
}

// Of a text the row says which one it is by describing it; of a number it must say what it stands for.
bool TellsTheNumber(const std::string& doc) {
  static const std::regex kValue(R"((^|[^\w.])(1|-1|[Nn]ot 0)([^\w]|$)|[Aa]lways|`then`)");
  static const std::regex kMeaning(
      "([Rr]esult|[Nn]umber|[Hh]andle|[Ww]indow|[Ss]ize|[Pp]lace|[Ll]ength|[Dd]epth|[Aa]ddress|[Ii]ndex|"
      "[Bb]its|[Vv]ersion|[Vv]alue|answers?|[Rr]oom|[Ww]hich|[Ii]d|How (long|many|often))([^\\w]|$)");
  return Has(doc, kValue) || Has(doc, kMeaning);
}

// "" when the text tells what comes back; else what is missing.
std::string Missing(const Row& row) {
  const std::string doc(row.doc);
  if (row.result == "Void") return "";
  if (!CannotFail(row.name) && !TellsTheFailure(doc)) return "what a failure gives";
  const bool text = row.result == "Str" || row.result == "OptStr";
  return text || TellsTheNumber(doc) ? "" : "the result";
}

TEST(RowDocs, TellTheResultAndWhatAFailureGives) {
  for (const Row& row : Rows()) {
    EXPECT_EQ(Missing(row), "") << row.name << ": " << row.doc;
  }
}

// The reference says it of each export by what that sends.
TEST(RowDocs, DoNotRepeatThatADialogRefuses) {
  for (const Row& row : Rows())
    EXPECT_EQ(row.doc.find("Refused while a dialog shows."), std::string_view::npos) << row.name;
}

// A row is read without its neighbours.
TEST(RowDocs, ThatBeginWithTheSameNameTheOther) {
  for (const Row& row : Rows()) {
    if (!row.doc.starts_with("The same ")) continue;
    static const std::regex kNamed(R"(^The same as (\w+))");
    std::cmatch named;
    const bool names_one = std::regex_search(row.doc.data(), row.doc.data() + row.doc.size(), named, kNamed);
    EXPECT_TRUE(names_one && FindRow(named[1].str()) != nullptr) << row.name << ": " << row.doc;
  }
}

// The last of a row of values that one text describes: a4 behind a3.
bool GoesOn(const Row& row, std::size_t at) {
  const std::string_view name = row.parameters[at].name;
  if (at == 0 || name.size() < 2 || name.find_last_of("0123456789") != name.size() - 1) return false;
  const std::string_view stem = name.substr(0, name.find_first_of("0123456789"));
  const std::string_view before = row.parameters[at - 1].name;
  return before.starts_with(stem) && before.substr(0, before.find_first_of("0123456789")) == stem;
}

TEST(RowDocs, TellWhatEachParameterIs) {
  for (const Row& row : Rows()) {
    for (std::size_t i = 0; i < row.parameters.size(); ++i) {
      const Parameter& parameter = row.parameters[i];
      EXPECT_TRUE(!parameter.doc.empty() || GoesOn(row, i)) << row.name << " " << parameter.name;
    }
  }
}

// That it is not checked stands beside the text already; what then counts does not.
TEST(RowDocs, TellWhatCountsForATextThatIsNotChecked) {
  for (const Row& row : Rows()) {
    for (const Parameter& parameter : row.parameters) {
      if (parameter.type != "RawText") continue;
      EXPECT_NE(parameter.doc, "not checked") << row.name << " " << parameter.name;
    }
  }
}

// "The host's result" alone tells nobody which number is the good one.
TEST(RowDocs, TellWhatTheSmallHostAnswersForAResultOfTheHost) {
  for (const Row& row : Rows()) {
    if (row.doc.find("he host's result") == std::string_view::npos) continue;
    const bool told = Has(std::string(row.doc), std::regex("small host|not 0"));
    EXPECT_TRUE(told) << row.name << ": " << row.doc;
  }
}

// No name means the current folder where that is harmless. What takes mails or a folder away wants one named.
TEST(RowDocs, OfWhatFilesMailsDoNotOfferTheCurrentFolder) {
  for (const char* name :
       {"Move", "Copy", "CopyWithCopyAttach", "DeleteFolder", "MakeFolder", "MakeGrepFolder"}) {
    for (const Parameter& parameter : FindRow(name)->parameters)
      EXPECT_EQ(parameter.doc.find("for the current one"), std::string_view::npos) << name;
  }
  EXPECT_NE(FindRow("GetNextFolder")->parameters[0].doc.find("for the current one"), std::string_view::npos);
}

TEST(RowDocs, ThatLackOneOfThemAreFound) {
  const struct {
    const char* result;
    const char* doc;
    const char* expected;
  } cases[] = {
      {"Int", "Ends the host.", "what a failure gives"},
      {"Int", "Does it, 0 on failure.", "the result"},
      {"Int", "1 when it is so, else 0.", ""},
      {"Int", "Number of mails, 0 for none.", ""},
      {"Int", "The 10 mails of 0x20 bytes.", "what a failure gives"},
      {"Str", "Name of the folder.", "what a failure gives"},
      {"Str", "Name of the folder, \"\" without one.", ""},
      {"Void", "Does it.", ""},
      {"Int", "The same as IsWrenfold.", "what a failure gives"},
      {"Int", "The same as IsWrenfold: 1 in the host, else 0.", ""},
  };
  for (const auto& c : cases) {
    Row row{};
    row.result = c.result;
    row.doc = c.doc;
    EXPECT_EQ(Missing(row), c.expected) << c.doc;
  }
}

}  // namespace
}  // namespace wfinfo::catalogue
