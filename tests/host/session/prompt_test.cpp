// The prompt of the small host.
#include <gtest/gtest.h>

#include <deque>
#include <string>

#include "host/library/export_help.h"
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
  std::string PrintValue(const Value& value) override { return value.Printed() + "\n"; }

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

Conversation Talk(std::deque<std::string> lines) {
  FakeSide side;
  side.lines = std::move(lines);
  FakeHost host(side.out);
  macro::Interpreter interpreter(host);
  const bool all_well = Prompt(interpreter, side, {Same, kNames, {}}).Run();
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
