// The prompt: calls and statements line by line, and a few words of its own.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/library/help_search.h"
#include "host/macro/check.h"
#include "host/macro/run.h"

namespace wrenfold {

// Where the prompt reads and writes; all texts are UTF-8.
class PromptSide {
 public:
  virtual ~PromptSide() = default;
  // One line without its end; `mark` is shown only where a person types. nullopt at the end of the input.
  virtual std::optional<std::string> ReadLine(std::string_view mark) = 0;
  virtual void Write(std::string_view text) = 0;
  virtual void Complain(std::string_view line) = 0;
  // Lines of all mails for "mails".
  virtual std::string MailList() = 0;
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
  bool Statement(std::string source);
  bool Command(std::string_view word, std::string_view rest);
  void RunFile(const std::string& file);
  void Variables();
  void Page(std::string_view text);
  void Explain(const macro::Problem& problem);
  void Help(std::string_view name);
  void Open(std::string_view number);

  macro::Interpreter& interpreter_;
  PromptSide& side_;
  PromptWords words_;
  bool all_well_ = true;
};

}  // namespace wrenfold
