#include "host/session/prompt.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "host/base/ascii.h"
#include "host/base/nearest_names.h"
#include "host/base/shortened.h"
#include "host/library/export_help.h"
#include "host/library/help_search.h"
#include "host/macro/block_words.h"
#include "host/macro/functions.h"
#include "host/session/prompt_help.h"
#include "src/catalogue/rows.h"

namespace wrenfold {
namespace {

constexpr std::string_view kMark = "> ";
constexpr std::string_view kMarkPage = "-- Enter goes on, q ends -- ";
constexpr std::string_view kMarkInside = ". ";  // while a block is open
constexpr std::string_view kNotRun = "nothing of this block was run";

// The first line of "mails": macros count otherwise than "open N".
constexpr std::string_view kMailsHead =
    "open N counts these from 1, over all folders; SetMailIndex(n) the current folder's from 0\n";

constexpr std::string_view kHelpAlone = "; help alone tells what there is";

// Words that other programs are left with, and so what is typed first.
constexpr std::string_view kLeavingElsewhere[] = {"exit", "exit()", "quit()", "bye", "q", ":q", "logout"};

// "word rest" of a line.
struct Words {
  std::string_view first;
  std::string_view rest;
};
Words Split(std::string_view line) {
  const std::size_t end = line.find_first_of(" \t");
  if (end == std::string_view::npos) return {line, ""};
  return {line.substr(0, end), Trim(line.substr(end))};
}

// What stands in double quotes, as a macro writes it, or the text itself.
std::string Unquoted(std::string_view text) {
  if (text.size() < 2 || !text.starts_with('"') || !text.ends_with('"')) return std::string(text);
  std::string inner(text.substr(1, text.size() - 2));
  for (std::size_t at = 0; (at = inner.find("\\\\", at)) != std::string::npos; ++at) inner.erase(at, 1);
  return inner;
}

bool IsAssignment(std::string_view rest) { return rest.starts_with('=') && rest != "=" && rest != "=="; }

}  // namespace

bool Prompt::Run() {
  side_.Write(side_.Greeting());
  side_.CompleteBy([this](std::string_view line) { return CompleteName(line, Names()); });
  while (const std::optional<std::string> line = Read(kMark)) Line(*line);
  return all_well_;
}

// All that a line may name: a function with its bracket, or both when it takes nothing.
std::vector<std::string> Prompt::Names() const {
  std::vector<std::string> names(words_.known.variables.begin(), words_.known.variables.end());
  const auto add = [&](std::string_view name, bool takes_nothing) {
    names.push_back(std::string(name) + (takes_nothing ? "()" : "("));
  };
  for (const auto& [name, parameters] : words_.known.functions) add(name, parameters == 0);
  for (const auto& row : wfinfo::catalogue::Rows()) add(row.name, row.parameters.empty());
  for (const auto& function : macro::OwnFunctions()) add(function.name, function.form.ends_with("()"));
  for (const HelpEntry& entry : words_.host_help) add(entry.name, entry.form.ends_with("()"));
  for (const HelpEntry& entry : PromptWordHelp()) {
    if (std::all_of(entry.name.begin(), entry.name.end(), IsLetter)) names.emplace_back(entry.name);
  }
  return names;
}

// nullopt at the end. Ctrl+D and Ctrl+Z reach some terminals as characters, which end the input too.
std::optional<std::string> Prompt::Read(std::string_view mark) {
  std::optional<std::string> line = ended_ ? std::nullopt : side_.ReadLine(mark);
  const bool quits = line && IsWord(Trim(*line), "quit");
  if (!line || quits || line->starts_with('\x04') || line->starts_with('\x1A')) {
    ended_ = true;
    return std::nullopt;
  }
  return line;
}

void Prompt::Line(const std::string& line) {
  const Words words = Split(Trim(line));
  if (words.first.starts_with('?')) return Help(Trim(Trim(line).substr(1)));
  const bool command = words.first == "help" || !words.rest.starts_with('(');
  if (command && !IsAssignment(words.rest) && Command(words.first, words.rest)) return;
  Statement(line);
  if (IsAssignment(words.rest)) TellHiddenVariable(words.first);
}

// Letter case counts only where a variable has that very name.
bool Prompt::IsWord(std::string_view typed, std::string_view word) const {
  return typed == word || (EqualsIgnoringCase(typed, word) && !words_.known.variables.contains(typed));
}

// True when the line was one of the prompt's own words.
bool Prompt::Command(std::string_view word, std::string_view rest) {
  const bool alone = rest.empty();
  const bool leaving = alone && std::find(std::begin(kLeavingElsewhere), std::end(kLeavingElsewhere), word) !=
                                    std::end(kLeavingElsewhere);
  if (leaving && !words_.known.variables.contains(word)) {
    Complain("quit leaves the prompt");
  } else if (IsWord(word, "help")) {
    Help(rest);
  } else if (IsWord(word, "mails")) {
    Mails(rest);
  } else if (IsWord(word, "folders") && alone) {
    Page(side_.FolderList());
  } else if (IsMisused(word, rest)) {
    Complain(std::string(word) + " stands alone: it lists " +
             (EqualsIgnoringCase(word, "vars") ? "all variables"
                                               : "all folders; mails FOLDER lists the mails of one"));
  } else if (IsWord(word, "vars") && alone) {
    Variables();
  } else if (IsWord(word, "run") && !alone) {
    RunFile(rest);
  } else if (IsWord(word, "open")) {
    Open(rest);
  } else {
    return false;
  }
  return true;
}

// "folders x": the word, which stands alone, with something behind it that makes no expression of it.
bool Prompt::IsMisused(std::string_view word, std::string_view rest) const {
  constexpr std::string_view kOperators = "=!<>+-*/%[(,.";
  if (!IsWord(word, "folders") && !IsWord(word, "vars")) return false;
  return !rest.empty() && !words_.known.variables.contains(word) &&
         kOperators.find(rest[0]) == kOperators.npos;
}

// "; did you mean help?" for "hepl" and "hepl folder"; "" when the first word is a variable or like none of
// the prompt's. Two letters that changed places are two slips.
std::string Prompt::MeantWord(std::string_view source) const {
  const Words words = Split(Trim(source));
  const bool is_name = std::all_of(words.first.begin(), words.first.end(), IsLetter);
  if (!is_name || words.first.size() < 3 || words_.known.variables.contains(words.first)) return "";
  if (!words.rest.empty() && !IsLetter(words.rest[0]) && !IsDigit(words.rest[0])) return "";
  std::string_view nearest;
  std::size_t least = words.first.size() > 3 ? 3 : 2;
  for (const HelpEntry& entry : PromptWordHelp()) {
    const std::size_t distance = EditDistance(words.first, entry.name);
    if (distance >= least) continue;
    nearest = entry.name;
    least = distance;
  }
  return nearest.empty() ? "" : "; did you mean " + std::string(nearest) + "?";
}

// A variable of this name is well, but its name alone does not show it.
void Prompt::TellHiddenVariable(std::string_view name) {
  const auto words = PromptWordHelp();
  const bool hidden =
      std::any_of(words.begin(), words.end(), [name](const HelpEntry& entry) { return entry.name == name; });
  if (!hidden || !words_.known.variables.contains(name) || !told_.emplace(name).second) return;
  const std::string word(name);
  side_.Complain(word + " at the beginning of a line stays a word of the prompt; print " + word +
                 " shows the variable");
}

void Prompt::RunFile(std::string_view file) {
  const auto loaded = side_.LoadMacro(Unquoted(file), words_.known);
  if (const auto* reason = std::get_if<std::string>(&loaded)) {
    Complain(*reason);
  } else if (const auto problem = interpreter_.Run(std::get<macro::Program>(loaded))) {
    Explain(*problem);
  }
}

void Prompt::Mails(std::string_view folder) {
  const auto list = side_.MailList(Unquoted(folder));
  if (!list) return Complain("there is no folder '" + Shortened(folder) + "'; folders lists them");
  Page(std::string(kMailsHead) + *list);
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
    const auto answer = Read(kMarkPage);
    if (!answer || *answer == "q") return;
  }
  side_.Write(text);
}

// Reads on while a block is open.
void Prompt::Statement(std::string source) {
  int open = macro::BlocksOpened(source);
  if (const auto wrong = WrongHeader(source)) return Refuse(*wrong, source, open);
  while (true) {
    const auto parsed = macro::Parse(source, {words_.to_host, true});
    if (const auto* program = std::get_if<macro::Program>(&parsed)) return Carry(*program, source, open);
    const auto& problem = std::get<macro::Problem>(parsed);
    if (!problem.incomplete) return Refuse(problem, source, open);
    const std::optional<std::string> more = Read(kMarkInside);
    if (!more) return Refuse(problem, source, open);
    open += macro::BlocksOpened(*more);
    source += "\n" + *more;
  }
}

void Prompt::Carry(const macro::Program& program, const std::string& source, int open) {
  if (const auto wrong = macro::CheckProgram(program, words_.host, words_.known)) {
    Refuse(*wrong, source, open);
  } else if (const auto problem = interpreter_.Run(program)) {
    Explain(*problem);
  } else if (interpreter_.last_value() && !interpreter_.last_value()->IsNull()) {
    side_.Write(side_.PrintValue(*interpreter_.last_value()));
  }
}

// A function whose name is taken is told before its lines are typed.
std::optional<macro::Problem> Prompt::WrongHeader(const std::string& line) const {
  const auto parsed = macro::Parse(line + "\nend", {words_.to_host, true});
  const auto* program = std::get_if<macro::Program>(&parsed);
  if (program == nullptr || program->functions.empty()) return std::nullopt;
  macro::KnownNames known = words_.known;
  return macro::CheckProgram(*program, words_.host, known);
}

// Tells what is wrong with `source`, and lets the lines of the blocks pass by that are open behind it: alone,
// they would do what the refused line was to decide.
void Prompt::Refuse(const macro::Problem& problem, const std::string& source, int open) {
  macro::Problem told = problem;
  const std::string meant = MeantWord(source);
  if (Split(Trim(source)).rest.empty() && told.text.starts_with("no variable ")) told.text += kHelpAlone;
  told.text += meant;
  Explain(told);
  const bool is_part = macro::BelongsToBlock(source);
  const bool is_block = is_part || open > 0 || source.find('\n') != std::string::npos;
  if (is_part) open = 1;
  while (open > 0) {
    const std::optional<std::string> line = Read(kMarkInside);
    if (!line) break;
    open += macro::BlocksOpened(*line);
  }
  if (is_block) Complain(kNotRun);
}

void Prompt::Complain(std::string_view line) {
  all_well_ = false;
  side_.Complain(line);
}

void Prompt::Explain(const macro::Problem& problem) {
  const std::string file = problem.file.empty() ? "" : problem.file + ", ";
  const std::string line = problem.place.line > 1 ? "line " + std::to_string(problem.place.line) + ", " : "";
  Complain(file + line + "column " + std::to_string(problem.place.column) + ": " + problem.text);
}

void Prompt::Help(std::string_view asked) {
  if (asked.empty()) return side_.Write(PromptHelp());
  std::vector<HelpEntry> others = words_.host_help;
  const auto words = PromptWordHelp();
  others.insert(others.end(), words.begin(), words.end());
  const auto example = [this](std::string_view name) { return side_.Example(name); };
  if (const auto text = HelpFor(asked, others, example)) return Page(*text);
  Complain(UnknownExport(asked) + std::string(kHelpAlone));
}

void Prompt::Open(std::string_view number) {
  std::size_t value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  const bool whole = error == std::errc() && end == number.data() + number.size();
  const std::optional<std::string> opened = whole ? side_.OpenMail(value) : std::nullopt;
  if (opened) return side_.Write(*opened);
  Complain("there is no mail '" + Shortened(number) + "'; mails lists them");
}

}  // namespace wrenfold
