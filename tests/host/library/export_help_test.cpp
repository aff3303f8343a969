// What the small host says of exports, and how it checks calls before a run.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/library/export_help.h"
#include "host/macro/check.h"
#include "src/catalogue/rows.h"

namespace wrenfold {
namespace {

using macro::Problem;
using macro::Value;
using wfinfo::catalogue::FindRow;

std::string Same(std::string_view text) { return std::string(text); }

TEST(ExportHelp, ShowsTheCallAndWhatItSends) {
  EXPECT_EQ(HelpText(*FindRow("SetMailIndex")),
            "SetMailIndex(index)\nOpens a mail of the list, which is then the only one selected. 1, or 0 "
            "when there is none at that place: so a loop over the list ends.\n"
            "  index: number; place in the list as it shows, 0 for the first\n"
            "Result: a number\nSends: code 33 (Frame)\nRefused while a dialog shows.\n"
            "The parameter list is inferred from the family and the name.\n"
            "See also: MailCount, NextMail, MailIndex, PrevMail\n");
  EXPECT_NE(HelpText(*FindRow("HomeDir")).find("\nGoes through while a dialog shows.\n"), std::string::npos);
  EXPECT_NE(HelpText(*FindRow("NewMail")).find("Sends: menu command 40002\nRefused"), std::string::npos);
  EXPECT_NE(HelpText(*FindRow("NextMail")).find("Sends: code 12 (Host), command 40031"), std::string::npos);
  EXPECT_NE(HelpText(*FindRow("DeleteFolder")).find("Sends: code 246 (Host), code 260 (Host)"),
            std::string::npos);
  EXPECT_NE(HelpText(*FindRow("SaveStringToFile"))
                .find("While a dialog shows, code 290 is refused; code 307 goes through.\n"),
            std::string::npos);
  EXPECT_EQ(HelpText(*FindRow("MainWnd")).find("while a dialog shows.\n"), std::string::npos);
  EXPECT_NE(HelpText(*FindRow("CallByEmailList")).find("Sends: what the called export sends\n"),
            std::string::npos);
}

TEST(ExportHelp, EachExportHasHelpAndStandsInTheOverview) {
  const std::string overview = HelpOverview();
  for (const auto& row : wfinfo::catalogue::Rows()) {
    EXPECT_TRUE(HelpText(row).starts_with(CallForm(row) + "\n")) << row.name;
    EXPECT_NE(overview.find(" " + std::string(row.name)), std::string::npos) << row.name;
    EXPECT_LE(row.parameters.size(), kMostParameters) << row.name;
  }
}

TEST(ExportHelp, RefusesCallsThatCannotBeRight) {
  struct Case {
    std::string name;
    std::vector<Value> parameters;
    std::string expected;
    const char* why;
  };
  const Value text(std::string("x"));
  const Value list(Value::Items{});
  const Case cases[] = {
      {"SetMailIndex",
       {list},
       "parameter 1 (index) of SetMailIndex is a number, and a list was given: SetMailIndex(index)",
       "a list"},
      {"RootHeader",
       {list},
       "parameter 1 (name) of RootHeader is a text, and a list was given: RootHeader(name)",
       "nor for a text"},
      {"RootHeader", {}, "RootHeader takes 1 parameter (name), 0 given: RootHeader(name)", "too few"},
      {"RootHeader",
       {text, text},
       "RootHeader takes 1 parameter (name), 2 given: RootHeader(name)",
       "too many"},
      {"HomeDir", {Value(1)}, "HomeDir takes no parameters, 1 given: HomeDir()", "none wanted"},
      {"SelectFolder",
       {text, text, text},
       "SelectFolder takes 0 to 2 parameters (folder1, folder2), 3 given: SelectFolder([folder1] [, "
       "folder2])",
       "optional texts"},
      {"SetMailIndex",
       {text},
       "parameter 1 (index) of SetMailIndex is a number, and a text was given: SetMailIndex(index)",
       "a text for a number"},
      {"SetMailIndex",
       {Value(std::int64_t{1} << 32)},
       "parameter 1 (index) of SetMailIndex is a number of 32 bits, and 4294967296 was given, which needs "
       "more",
       "its lower half is 0, another mail"},
      {"SetMailIndex",
       {Value(-(std::int64_t{1} << 31) - 1)},
       "parameter 1 (index) of SetMailIndex is a number of 32 bits, and -2147483649 was given, which needs "
       "more",
       "the same below"},
      {"GetWFInfoVersion",
       {Value(5)},
       "GetWFInfoVersion is called by the host itself, once, after loading",
       "the host's own"},
  };
  for (const Case& c : cases) EXPECT_EQ(CheckCall(*FindRow(c.name), c.parameters), c.expected) << c.why;
  EXPECT_EQ(CheckCall(*FindRow("RootHeader"), std::vector<Value>{Value(5)}), std::nullopt)
      << "the library tells that";
  EXPECT_EQ(CheckCall(*FindRow("SelectFolder"), std::vector<Value>{}), std::nullopt);
  for (const std::int64_t number : {(std::int64_t{1} << 32) - 1, -(std::int64_t{1} << 31)})
    EXPECT_EQ(CheckCall(*FindRow("SetMailIndex"), std::vector<Value>{Value(number)}), std::nullopt)
        << "32 bits";
  EXPECT_EQ(CheckCall(*FindRow("Bypass_IsWindowVisible"), std::vector<Value>{Value(std::int64_t{1} << 40)}),
            std::nullopt)
      << "a handle has 64";
  EXPECT_EQ(CheckCall(*FindRow("SelectFolder"), std::vector<Value>{text, Value()}), std::nullopt);
  EXPECT_EQ(CheckCall(*FindRow("SetMailIndex"), std::vector<Value>{Value()}), std::nullopt) << "null is 0";
  EXPECT_TRUE(UnknownExport("RootHeadr").starts_with("no export 'RootHeadr'; did you mean RootHeader"));
}

std::optional<Problem> Checked(std::string_view source) {
  constexpr macro::HostNames kNames = {CheckCallForm, [](std::string_view) { return false; }};
  macro::KnownNames known;
  return macro::CheckProgram(std::get<macro::Program>(macro::Parse(source, {Same, false})), kNames, known);
}

TEST(ExportHelp, FindsTheFirstWrongCallAnywhere) {
  struct Case {
    const char* source;
    std::size_t line;
    std::size_t column;
  };
  const Case cases[] = {
      {"print HomeDir()\nprint Nix()", 2, 7},
      {"print RootHeader(HomeDir(1))", 1, 18},
      {"if 0\nprint 1\nelse\nx = -Nix() + 1\nend", 4, 6},
      {"while Nix()\nend", 1, 7},
      {"print [1, {\"a\": Nix()}][0]", 1, 17},
      {"while 1\nif 0\nNix()\nend\nend\nNix2()", 3, 1},
  };
  for (const Case& c : cases) {
    const auto problem = Checked(c.source);
    ASSERT_TRUE(problem) << c.source;
    EXPECT_EQ(problem->place.line, c.line) << c.source;
    EXPECT_EQ(problem->place.column, c.column) << c.source;
  }
  EXPECT_FALSE(Checked("x = HomeDir()\nprint x"));
}

}  // namespace
}  // namespace wrenfold
