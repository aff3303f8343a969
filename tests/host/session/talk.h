// A prompt that a test talks with.
#pragma once

#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "host/library/export_help.h"
#include "host/session/prompt.h"

namespace wrenfold {

using macro::Value;

inline std::string Same(std::string_view text) { return std::string(text); }

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
  std::string Greeting() override { return greeting; }
  std::optional<std::string> ReadLine(std::string_view mark) override {
    marks += mark;
    if (lines.empty()) return std::nullopt;
    std::string line = lines.front();
    lines.pop_front();
    return line;
  }
  void Write(std::string_view text) override { out += text; }
  void Complain(std::string_view line) override { out += "! " + std::string(line) + "\n"; }
  std::optional<std::string> MailList(const std::string& folder) override {
    if (folder.starts_with("none")) return std::nullopt;
    return "list" + (folder.empty() ? "" : " of " + folder) + "\n";
  }
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

  std::string greeting;
  std::size_t page_lines = 0;
  std::deque<std::string> lines;
  std::string marks;
  std::string out;
};

inline std::optional<std::string> CheckCall(const std::string& name, std::size_t,
                                            std::span<const std::string_view>) {
  return name == "Text" || name == "Nothing" ? std::nullopt : std::optional(UnknownExport(name));
}
inline const macro::HostNames kNames = {CheckCall, [](std::string_view) { return false; }};

inline const std::string kMailsHead =
    "open N counts these from 1, over all folders; SetMailIndex(n) the current folder's from 0\n";

struct Conversation {
  std::string out;
  std::string marks;
  bool all_well;
};

inline Conversation Talk(std::deque<std::string> lines, std::size_t page_lines = 0) {
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

}  // namespace wrenfold
