// The prompt of the small host.
#include <gtest/gtest.h>

#include <deque>
#include <string>

#include "host/library/export_help.h"
#include "host/macro/tokens.h"
#include "host/session/prompt.h"
#include "src/catalogue/rows.h"

namespace wrenfold {
namespace {

using macro::Value;
using wfinfo::catalogue::FindRow;

std::string Same(std::string_view text) { return std::string(text); }

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
  std::string FolderList() override { return "folder 1\nfolder 2\nfolder 3\n"; }
  std::variant<macro::Program, std::string> LoadMacro(const std::string& file,
                                                      macro::KnownNames& known) override {
    if (file != "a.macro") return "cannot read the macro " + file;
    known.variables.insert("made");
    return std::get<macro::Program>(macro::Parse("made = 5\nprint made / 0", {Same, false, file}));
  }
  std::size_t PageLines() override { return page_lines; }
  std::string Example(std::string_view name) override {
    return name == "HomeDir" ? "" : "print " + std::string(name) + "()\n#> 1\n";
  }
  std::string PrintValue(const Value& value) override { return value.Printed() + "\n"; }

  std::size_t page_lines = 0;
  std::deque<std::string> lines;
  std::string marks;
  std::string out;
};

std::optional<std::string> CheckCall(const std::string& name, std::size_t,
                                     std::span<const std::string_view>) {
  return name == "Text" || name == "Nothing" ? std::nullopt : std::optional(UnknownExport(name));
}
const macro::HostNames kNames = {CheckCall, [](std::string_view) { return false; }};

struct Conversation {
  std::string out;
  std::string marks;
  bool all_well;
};

Conversation Talk(std::deque<std::string> lines, std::size_t page_lines = 0) {
  FakeSide side;
  side.page_lines = page_lines;
  side.lines = std::move(lines);
  FakeHost host(side.out);
  macro::Interpreter interpreter(host);
  const bool all_well =
      Prompt(interpreter, side,
             {Same, kNames, {}, {{"HostReason", "HostReason()", "Why the call before failed."}}})
          .Run();
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
  EXPECT_EQ(Talk({"help MailCount"}).out, HelpText(*FindRow("MailCount")) + "\nprint MailCount()\n#> 1\n")
      << "with its example";
  EXPECT_EQ(Talk({"help exports"}).out, HelpOverview());
  EXPECT_NE(Talk({"help"}).out.find("help NAME"), std::string::npos);
  const Conversation unknown = Talk({"help HomeDirr"});
  EXPECT_EQ(unknown.out, "! no export 'HomeDirr'; did you mean HomeDir?\n");
  EXPECT_FALSE(unknown.all_well);
  EXPECT_EQ(Talk({"open = 4", "help = 5", "print open, help"}).out, "printed 45\n")
      << "they are free as variables";
}

TEST(Prompt, RunsFilesAndListsVariablesAndFolders) {
  const Conversation talk =
      Talk({"vars", "x = \"a\\nb\"", "run none.macro", "run a.macro", "made", "vars", "folders"});
  EXPECT_EQ(
      talk.out,
      "no variables yet; name = value makes one\n! cannot read the macro none.macro\n"
      "! a.macro, line 2, column 12: division by 0\n5\nmade = 5\nx = a...\nfolder 1\nfolder 2\nfolder 3\n");
  EXPECT_FALSE(talk.all_well);
  EXPECT_EQ(Talk({"vars = 1", "run = 2", "folders = 3", "print vars, run, folders"}).out, "printed 123\n");
}

TEST(Prompt, PagesLongLists) {
  const Conversation whole = Talk({"folders", "", "1"}, 2);
  EXPECT_EQ(whole.out, "folder 1\nfolder 2\nfolder 3\n1\n");
  EXPECT_EQ(whole.marks, "> -- Enter goes on, q ends -- > > ");
  EXPECT_EQ(Talk({"folders", "q", "1"}, 2).out, "folder 1\nfolder 2\n1\n");
  EXPECT_EQ(Talk({"folders", "1"}, 3).out, "folder 1\nfolder 2\nfolder 3\n1\n")
      << "what fits is not asked for";
}

TEST(Prompt, HelpsByWord) {
  const struct {
    const char* asked;
    const char* part;
    const char* why;
  } kCases[] = {
      {"help folder", "SelectFolder([folder1] [, folder2])\n    ", "part of names"},
      {"help csv", "CSV_LoadFile(", "letter case does not count"},
      {"help newsletter", "RootHeader(name)\n", "a topic that the exports name otherwise"},
      {"help families", "Mail list (", "all families"},
      {"help mail list",
       "MailCount()\n    Number of mails that the list shows: those of the folder that are in the view "
       "area and not hidden in folded threads.\n",
       "one family"},
      {"help if", "if expression ... else if", "a word of the language"},
      {"help while", "while expression ... end\n", "another"},
      {"help +", "From weak to strong.", "an operator"},
      {"help ==", "From weak to strong.", "another"},
      {"help split", "split(text, separator)\nThe parts of a text", "a function of the language"},
      {"help HostReason", "HostReason()\nWhy", "a function of the host"},
      {"help reason", "HostReason()\n    Why", "found by word"},
  };
  for (const auto& c : kCases) {
    EXPECT_NE(Talk({c.asked}).out.find(c.part), std::string::npos) << c.why << "\n" << Talk({c.asked}).out;
  }
  EXPECT_NE(Talk({"help mail"}).out.find(" more; help families lists them by subject\n"), std::string::npos);
}

TEST(Prompt, EachWordOfTheLanguageHasHelp) {
  for (const std::string_view word : macro::kKeywords) {
    EXPECT_TRUE(Talk({"help " + std::string(word)}).all_well) << word;
    EXPECT_EQ(Talk({"help " + std::string(word)}).out.find("    "), std::string::npos)
        << word << ": found by search only";
  }
}

}  // namespace
}  // namespace wrenfold
