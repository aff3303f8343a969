// The prompt: calls and statements line by line, and a few words of its own.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/library/help_entry.h"
#include "host/macro/check.h"
#include "host/macro/run.h"
#include "host/terminal/completion.h"

namespace wrenfold {

// Where the prompt reads and writes; all texts are UTF-8.
class PromptSide {
 public:
  virtual ~PromptSide() = default;
  // What a person who types is greeted with, "" where nobody does.
  virtual std::string Greeting() { return ""; }
  // One line without its end; `mark` is shown only where a person types. nullopt at the end of the input.
  virtual std::optional<std::string> ReadLine(std::string_view mark) = 0;
  virtual void Write(std::string_view text) = 0;
  virtual void Complain(std::string_view line) = 0;
  // Lines for "mails": of all mails, or of those in a folder, named as SelectFolder takes it; nullopt when
  // there is none of that name.
  virtual std::optional<std::string> MailList(const std::string& folder) = 0;
  // "open N": opens mail N, counted from 1, and says which it is; nullopt when there is none.
  virtual std::optional<std::string> OpenMail(std::size_t number) = 0;
  virtual std::string PrintValue(const macro::Value& value) = 0;
  // Lines of all folders for "folders".
  virtual std::string FolderList() = 0;
  // "run FILE": the macro, looked over, or why it cannot be run.
  virtual std::variant<macro::Program, std::string> LoadMacro(const std::string& file,
                                                              macro::KnownNames& known) = 0;
  // The executed example of an export; "" when there is none.
  virtual std::string Example(std::string_view) { return ""; }
  // Lines that a screen holds; 0 where nobody reads along.
  virtual std::size_t PageLines() { return 0; }
  // How Tab completes, where a person types.
  virtual void CompleteBy(Completer) {}
};

// What statements are read with.
struct PromptWords {
  std::string (*to_host)(std::string_view utf8);
  const macro::HostNames& host;
  macro::KnownNames known = {};           // by what ran before
  std::vector<HelpEntry> host_help = {};  // of the host's own functions
};

class Prompt {
 public:
  Prompt(macro::Interpreter& interpreter, PromptSide& side, PromptWords words)
      : interpreter_(interpreter), side_(side), words_(std::move(words)) {}

  // Until "quit" or the end of the input. False when a line went wrong.
  bool Run();

 private:
  std::vector<std::string> Names() const;
  std::optional<std::string> Read(std::string_view mark);
  void Line(const std::string& line);
  bool IsWord(std::string_view typed, std::string_view word) const;
  bool IsMisused(std::string_view word, std::string_view rest) const;
  std::string MeantWord(std::string_view source) const;
  bool Command(std::string_view word, std::string_view rest);
  void Statement(std::string source);
  void Carry(const macro::Program& program, const std::string& source, int open);
  std::optional<macro::Problem> WrongHeader(const std::string& line) const;
  void Refuse(const macro::Problem& problem, const std::string& source, int open);
  void TellHiddenVariable(std::string_view name);

  void RunFile(std::string_view file);
  void Mails(std::string_view folder);
  void Variables();
  void Page(std::string_view text);
  void Complain(std::string_view line);
  void Explain(const macro::Problem& problem);
  void Help(std::string_view asked);
  void Open(std::string_view number);

  macro::Interpreter& interpreter_;
  PromptSide& side_;
  PromptWords words_;
  std::set<std::string, std::less<>> told_;  // variables whose names are the prompt's words
  bool ended_ = false;
  bool all_well_ = true;
};

}  // namespace wrenfold
