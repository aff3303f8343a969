#include "host/session/prompt.h"

#include <algorithm>
#include <charconv>

#include "host/library/export_help.h"
#include "host/terminal/terminal_text.h"
#include "src/catalogue/rows.h"

namespace wrenfold {
namespace {

constexpr std::string_view kMark = "> ";
constexpr std::string_view kMarkPage = "-- Enter goes on, q ends -- ";
constexpr std::string_view kMarkInside = ". ";  // while an if or while is open

constexpr std::string_view kPromptHelp =
    "RootHeader(\"Subject\")  calls an export and prints its result; calls nest, name = ... keeps a value\n"
    "help NAME              what an export, a word of the language or a function of the host does\n"
    "help WORD              finds exports by a word: help folder, help csv\n"
    "help families          lists the subjects, help FAMILY the exports of one; help exports lists all "
    "names\n"
    "mails                  lists the mails; open N opens mail N of that list; folders lists the folders\n"
    "vars                   lists the variables; run FILE runs a macro file\n"
    "quit                   leaves\n";

std::string_view Trimmed(std::string_view text) {
  while (text.starts_with(' ') || text.starts_with('\t')) text.remove_prefix(1);
  while (text.ends_with(' ') || text.ends_with('\t') || text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

// "word rest" of a line.
struct Words {
  std::string_view first;
  std::string_view rest;
};
Words Split(std::string_view line) {
  const std::size_t end = line.find_first_of(" \t");
  if (end == std::string_view::npos) return {line, ""};
  return {line.substr(0, end), Trimmed(line.substr(end))};
}

}  // namespace

bool Prompt::Run() {
  while (std::optional<std::string> line = side_.ReadLine(kMark)) {
    const Words words = Split(Trimmed(*line));
    const bool command = words.rest == "==" || (!words.rest.starts_with('=') && !words.rest.starts_with('('));
    if (words.first == "quit" && words.rest.empty()) break;
    if (command && Command(words.first, words.rest)) continue;
    if (!Statement(*std::move(line))) {
      break;
    }
  }
  return all_well_;
}

// True when the line was one of the prompt's own words.
bool Prompt::Command(std::string_view word, std::string_view rest) {
  if (word == "help") {
    Help(rest);
  } else if (word == "mails" && rest.empty()) {
    Page(side_.MailList());
  } else if (word == "folders" && rest.empty()) {
    Page(side_.FolderList());
  } else if (word == "vars" && rest.empty()) {
    Variables();
  } else if (word == "run" && !rest.empty()) {
    RunFile(std::string(rest));
  } else if (word == "open") {
    Open(rest);
  } else {
    return false;
  }
  return true;
}

void Prompt::RunFile(const std::string& file) {
  const auto loaded = side_.LoadMacro(file, words_.known);
  if (const auto* reason = std::get_if<std::string>(&loaded)) {
    all_well_ = false;
    side_.Complain(*reason);
  } else if (const auto problem = interpreter_.Run(std::get<macro::Program>(loaded))) {
    Explain(*problem);
  }
}

// "name = value", of a long value the beginning of its first line.
void Prompt::Variables() {
  constexpr std::size_t kMost = 70;  // bytes
  std::string list;
  for (const auto& [name, value] : interpreter_.variables()) {
    std::string line = side_.PrintValue(value);
    const std::size_t end = line.find('\n');
    const bool cut = end + 1 < line.size() || end > kMost;
    std::size_t length = std::min(end, kMost);
    while (length > 0 && (line[length] & 0xC0) == 0x80) --length;  // whole characters
    list += name + " = " + line.substr(0, length) + (cut ? "...\n" : "\n");
  }
  Page(list.empty() ? "no variables yet; name = value makes one\n" : list);
}

// Screen by screen where somebody reads along.
void Prompt::Page(std::string_view text) {
  const std::size_t lines = side_.PageLines();
  while (lines > 0) {
    std::size_t end = 0;
    for (std::size_t i = 0; i < lines && end != std::string_view::npos; ++i)
      end = text.find('\n', end == 0 ? 0 : end + 1);
    if (end == std::string_view::npos || end + 1 >= text.size()) break;
    side_.Write(text.substr(0, end + 1));
    text.remove_prefix(end + 1);
    const auto answer = side_.ReadLine(kMarkPage);
    if (!answer || *answer == "q") return;
  }
  side_.Write(text);
}

// Reads on while an if or while is open. False at the end of the input.
bool Prompt::Statement(std::string source) {
  while (true) {
    const auto parsed = macro::Parse(source, {words_.to_host, true});
    if (const auto* program = std::get_if<macro::Program>(&parsed)) {
      if (const auto wrong = macro::CheckProgram(*program, words_.host, words_.known)) {
        Explain(*wrong);
      } else if (const auto problem = interpreter_.Run(*program)) {
        Explain(*problem);
      } else if (interpreter_.last_value() && !interpreter_.last_value()->IsNull()) {
        side_.Write(side_.PrintValue(*interpreter_.last_value()));
      }
      return true;
    }
    const auto& problem = std::get<macro::Problem>(parsed);
    std::optional<std::string> more;
    if (problem.incomplete) more = side_.ReadLine(kMarkInside);
    if (!more) {
      Explain(problem);
      return !problem.incomplete;
    }
    source += "\n" + *more;
  }
}

void Prompt::Explain(const macro::Problem& problem) {
  all_well_ = false;
  const std::string file = problem.file.empty() ? "" : problem.file + ", ";
  const std::string line = problem.place.line > 1 ? "line " + std::to_string(problem.place.line) + ", " : "";
  side_.Complain(file + line + "column " + std::to_string(problem.place.column) + ": " + problem.text);
}

void Prompt::Help(std::string_view name) {
  if (name.empty()) return side_.Write(kPromptHelp);
  if (name == "exports") return Page(HelpOverview());
  if (name == "families") return Page(HelpFamilies());
  if (auto text = HelpFor(name, words_.host_help)) {
    if (const std::string example = side_.Example(name); !example.empty()) text->append("\n").append(example);
    return Page(*text);
  }
  all_well_ = false;
  side_.Complain(UnknownExport(name));
}

void Prompt::Open(std::string_view number) {
  std::size_t value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  const bool whole = error == std::errc() && end == number.data() + number.size();
  const std::optional<std::string> opened = whole ? side_.OpenMail(value) : std::nullopt;
  if (opened) return side_.Write(*opened);
  all_well_ = false;
  side_.Complain("there is no mail '" + std::string(number) + "'; mails lists them");
}

}  // namespace wrenfold
