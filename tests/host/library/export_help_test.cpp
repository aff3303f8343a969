// What the small host says of exports and requests, and its prompt.
#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

#include "host/library/export_help.h"
#include "host/library/request_names.h"
#include "host/macro/check.h"
#include "host/session/prompt.h"
#include "src/catalogue/rows.h"

namespace wrenfold {
namespace {

using macro::Value;
using wfinfo::catalogue::FindRow;

std::string Same(std::string_view text) { return std::string(text); }

TEST(RequestNames, NamesTheExportAtWork) {
  EXPECT_EQ(RequestNames({46, 0}, "HomeDir"), "HomeDir");
  EXPECT_EQ(RequestNames({46, 0}, ""), "HomeDir");
  EXPECT_EQ(RequestNames({46, 0}, "NewMail"), "HomeDir") << "an export that does not send this";
  EXPECT_EQ(RequestNames({38, 0}, ""), "DisableDraw, EnableDraw, EnableDraw2");
  EXPECT_EQ(RequestNames({38, 0}, "EnableDraw2"), "EnableDraw2");
  EXPECT_EQ(RequestNames({248, 0}, ""), "GetTabCount, GetCurrentTab, GetTabFlag, ...");
  EXPECT_EQ(RequestNames({9999, 0}, ""), "?");
}

TEST(RequestNames, TellsMenuCommandsApart) {
  EXPECT_EQ(RequestNames({12, 40031}, ""), "NextMail");
  EXPECT_EQ(RequestNames({12, 40032}, "NextMail"), "PrevMail");
  EXPECT_EQ(RequestNames({57, 40003}, ""), "StartReceive");
  EXPECT_EQ(RequestNames({0, 40002}, ""), "NewMail");
  EXPECT_EQ(RequestNames({12, 1}, ""), "?");
  EXPECT_EQ(RequestTitle({12, 40031}), "code 12, command 40031");
  EXPECT_EQ(RequestTitle({0, 40002}), "menu command 40002");
  EXPECT_EQ(RequestTitle({46, 0}), "code 46");
}

TEST(RequestNames, KnowsTheSlots) {
  EXPECT_EQ(SlotShapes({46, 0}, ""), "");
  EXPECT_EQ(SlotShapes({33, 0}, ""), "I");
  EXPECT_EQ(SlotShapes({12, 40031}, ""), "I");
  EXPECT_EQ(SlotShapes({248, 0}, "SetTabTitle"), "IIT") << "the sub-command stands first";
  EXPECT_EQ(SlotShapes({248, 0}, "GetTabCount"), "I");
  EXPECT_EQ(SlotShapes({0, 40002}, ""), "");
}

TEST(ExportHelp, ShowsTheCallAndWhatItSends) {
  EXPECT_EQ(
      HelpText(*FindRow("SetMailIndex")),
      "SetMailIndex(index)\nMakes mail `index` of the list the current one.\n  index: number; 0 = first\n"
      "Result: a number, 0 on failure\nSends: code 33 (Frame); refused while a dialog shows\n"
      "The parameter list is inferred from the family and the name.\n");
  EXPECT_NE(HelpText(*FindRow("HomeDir")).find("goes through while a dialog shows"), std::string::npos);
  EXPECT_NE(HelpText(*FindRow("NewMail")).find("Sends: menu command 40002; refused"), std::string::npos);
  EXPECT_NE(HelpText(*FindRow("NextMail")).find("Sends: code 12 (Host), command 40031"), std::string::npos);
  EXPECT_NE(HelpText(*FindRow("DeleteFolder")).find("Sends: code 246 (Host), code 260 (Host)"),
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
  const Case cases[] = {
      {"RootHeader", {}, "RootHeader takes 1 parameter (name), 0 given; see help RootHeader", "too few"},
      {"RootHeader",
       {text, text},
       "RootHeader takes 1 parameter (name), 2 given; see help RootHeader",
       "too many"},
      {"HomeDir", {Value(1)}, "HomeDir takes no parameters, 1 given; see help HomeDir", "none wanted"},
      {"SelectFolder",
       {text, text, text},
       "SelectFolder takes 0 to 2 parameters (folder1, folder2), 3 given; see help SelectFolder",
       "optional texts"},
      {"SetMailIndex",
       {text},
       "parameter 1 (index) of SetMailIndex is a number, and a text was given; see help SetMailIndex",
       "a text for a number"},
      {"GetWFInfoVersion",
       {Value(5)},
       "GetWFInfoVersion is called by the host itself, once, after loading",
       "the host's own"},
  };
  for (const Case& c : cases) EXPECT_EQ(CheckCall(*FindRow(c.name), c.parameters), c.expected) << c.why;
  EXPECT_EQ(CheckCall(*FindRow("RootHeader"), std::vector<Value>{Value(5)}), std::nullopt)
      << "the library tells that";
  EXPECT_EQ(CheckCall(*FindRow("SelectFolder"), std::vector<Value>{}), std::nullopt);
  EXPECT_EQ(CheckCall(*FindRow("SelectFolder"), std::vector<Value>{text, Value()}), std::nullopt);
  EXPECT_EQ(CheckCall(*FindRow("SetMailIndex"), std::vector<Value>{Value()}), std::nullopt) << "null is 0";
  EXPECT_TRUE(UnknownExport("RootHeadr").starts_with("no export 'RootHeadr'; did you mean RootHeader"));
}

TEST(MacroCheck, FindsTheFirstWrongCallAnywhere) {
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
      {"while 1\nif 0\nNix()\nend\nend\nNix2()", 3, 1},
  };
  for (const Case& c : cases) {
    const auto program = std::get<macro::Program>(macro::Parse(c.source, {Same, false}));
    const auto problem = macro::CheckCalls(program, CheckCallForm);
    ASSERT_TRUE(problem) << c.source;
    EXPECT_EQ(problem->place.line, c.line) << c.source;
    EXPECT_EQ(problem->place.column, c.column) << c.source;
  }
  EXPECT_FALSE(macro::CheckCalls(
      std::get<macro::Program>(macro::Parse("x = HomeDir()\nprint x", {Same, false})), CheckCallForm));
}

// --- Prompt ---

class FakeHost : public macro::MacroHost {
 public:
  explicit FakeHost(std::string& out) : out_(out) {}
  std::variant<Value, macro::Complaint> Call(const std::string& name, std::span<const Value>) override {
    if (name == "Text") return Value(std::string("text"));
    if (name == "Nothing") return Value();
    return macro::Complaint{UnknownExport(name)};
  }
  bool HasFunction(std::string_view) const override { return false; }
  void Print(std::string_view line) override { out_ += "printed " + std::string(line) + "\n"; }

 private:
  std::string& out_;
};

class FakeSide : public PromptSide {
 public:
  std::optional<std::string> ReadLine(std::string_view mark) override {
    marks += mark;
    if (lines.empty()) return std::nullopt;
    std::string line = lines.front();
    lines.pop_front();
    return line;
  }
  void Write(std::string_view text) override { out += text; }
  void Complain(std::string_view line) override { out += "! " + std::string(line) + "\n"; }
  std::string MailList() override { return "list\n"; }
  std::optional<std::string> OpenMail(std::size_t number) override {
    return number == 2 ? std::optional<std::string>("opened 2\n") : std::nullopt;
  }
  std::string PrintValue(const Value& value) override { return value.Printed() + "\n"; }

  std::deque<std::string> lines;
  std::string marks;
  std::string out;
};

struct Conversation {
  std::string out;
  std::string marks;
  bool all_well;
};

Conversation Talk(std::deque<std::string> lines) {
  FakeSide side;
  side.lines = std::move(lines);
  FakeHost host(side.out);
  macro::Interpreter interpreter(host);
  const bool all_well = Prompt(interpreter, side, Same).Run();
  return {side.out, side.marks, all_well};
}

TEST(Prompt, PrintsValuesAndKeepsVariables) {
  const Conversation talk =
      Talk({"Text()", "x = 1 + 2", "x * 2", "", "# nothing", "Nothing()", "print x, 1", "quit", "5"});
  EXPECT_EQ(talk.out, "text\n6\nprinted 31\n");
  EXPECT_TRUE(talk.all_well);
}

TEST(Prompt, ReadsOnWhileABlockIsOpen) {
  const Conversation talk = Talk({"if 1", "print 1", "while 0", "end", "end", "2"});
  EXPECT_EQ(talk.out, "printed 1\n2\n");
  EXPECT_EQ(talk.marks, "> . . . . > > ");
}

TEST(Prompt, TellsMistakesAndGoesOn) {
  const Conversation talk = Talk({"1 +", "if 1", "1 / 0", "end", "3", "if 2"});
  EXPECT_EQ(talk.out,
            "! column 4: a value is missing before the end of the macro; write a number, a \"text\", a "
            "variable or a "
            "call Name(...)\n"
            "! line 2, column 3: division by 0\n"
            "3\n"
            "! column 1: this if has no end; write end on a line of its own\n");
  EXPECT_FALSE(talk.all_well);
}

TEST(Prompt, HasWordsOfItsOwn) {
  EXPECT_EQ(Talk({"mails", "open 2", " open  2 "}).out, "list\nopened 2\nopened 2\n");
  EXPECT_EQ(Talk({"open 3", "open", "open x"}).out,
            "! there is no mail '3'; mails lists them\n! there is no mail ''; mails lists them\n"
            "! there is no mail 'x'; mails lists them\n");
  EXPECT_EQ(Talk({"help HomeDir"}).out, HelpText(*FindRow("HomeDir")));
  EXPECT_EQ(Talk({"help exports"}).out, HelpOverview());
  EXPECT_NE(Talk({"help"}).out.find("help NAME"), std::string::npos);
  const Conversation unknown = Talk({"help HomeDirr"});
  EXPECT_EQ(unknown.out, "! no export 'HomeDirr'; did you mean HomeDir?\n");
  EXPECT_FALSE(unknown.all_well);
  EXPECT_EQ(Talk({"open = 4", "help = 5", "print open, help"}).out, "printed 45\n")
      << "they are free as variables";
}

}  // namespace
}  // namespace wrenfold
