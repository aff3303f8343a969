#include "host/session/prompt.h"

#include <charconv>

#include "host/library/export_help.h"
#include "host/terminal/terminal_text.h"
#include "src/catalogue/rows.h"

namespace wrenfold {
namespace {

constexpr std::string_view kMark = "> ";
constexpr std::string_view kMarkInside = ". ";  // while an if or while is open

constexpr std::string_view kPromptHelp =
    "RootHeader(\"Subject\")  calls an export and prints its result; calls nest, name = ... keeps a value\n"
    "help NAME              what the export NAME does; help exports lists all names\n"
    "mails                  lists the mails; open N opens mail N of that list\n"
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
    const bool command = !words.rest.starts_with('=') && !words.rest.starts_with('(');
    if (words.first == "quit" && words.rest.empty()) break;
    if (words.first == "help" && command) {
      Help(words.rest);
    } else if (words.first == "mails" && words.rest.empty()) {
      side_.Write(side_.MailList());
    } else if (words.first == "open" && command) {
      Open(words.rest);
    } else if (!Statement(*std::move(line))) {
      break;
    }
  }
  return all_well_;
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
  if (name == "exports") return side_.Write(HelpOverview());
  if (const auto* row = wfinfo::catalogue::FindRow(name)) return side_.Write(HelpText(*row));
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
