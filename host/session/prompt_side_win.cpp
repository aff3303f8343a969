#include "host/session/prompt_side_win.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/base/paths.h"
#include "host/base/version.h"
#include "host/folders/folder_names.h"
#include "host/library/example_files_win.h"
#include "host/library/host_functions_win.h"
#include "host/session/library_host_win.h"
#include "host/session/macro_files.h"
#include "host/session/prompt.h"
#include "host/shared/transport_win.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/interrupt_win.h"
#include "host/terminal/shown_host_text.h"
#include "host/terminal/terminal_win.h"
#include "host/windows/frame_win.h"

namespace wrenfold {
namespace {

class TerminalSide : public PromptSide {
 public:
  explicit TerminalSide(HostState& state) : state_(state) {}

  std::optional<std::string> ReadLine(std::string_view mark) override {
    if (!IsInterrupted()) Windows::Pump();
    if (state_.commands.application.frame_closed) wrenfold::Complain(kFrameClosed);
    if (state_.commands.application.exit_asked) return std::nullopt;
    // Ctrl+C empties the line at a terminal, and ends a statement that runs, with what it was sending.
    if (IsInterrupted()) StopTransmission(state_);
    interruptible_.reset();
    if (TheTerminal().IsInteractive()) interruptible_.emplace();
    auto line = TheTerminal().ReadLine(mark, complete_);
    interruptible_.reset();
    interruptible_.emplace();
    return line;
  }
  void Write(std::string_view text) override { TheTerminal().Out(text); }
  void Complain(std::string_view line) override { TheTerminal().Error(std::string(line) + "\n"); }
  std::string PrintValue(const macro::Value& value) override { return ShownHostText(value.Printed()) + "\n"; }

  std::string Greeting() override {
    return TheTerminal().IsInteractive() ? "wrenfold " + std::string(kHostVersion) + ": help, quit\n" : "";
  }
  std::optional<std::string> MailList(const std::string& folder) override {
    const auto only = folder.empty() ? std::nullopt : state_.tree().Find(folder, state_.folder());
    if (!folder.empty() && !only) return std::nullopt;
    std::string list;
    for (std::size_t i = 0; i < state_.mail_count(); ++i) {
      if (!state_.IsRemoved(i) && (!only || state_.Mail(i).folder == *only)) list += Line(i);
    }
    return !list.empty() ? list : only ? "no mails\n" : "no mails; give --mail\n";
  }
  std::optional<std::string> OpenMail(std::size_t number) override {
    if (number == 0 || !state_.Open(number - 1)) return std::nullopt;
    return Line(number - 1);
  }
  std::string FolderList() override {
    std::string list;
    for (std::size_t i = 0; i < state_.folders().size(); ++i) {
      if (state_.folders()[i].removed) continue;
      list += i == state_.folder() && state_.HasRoot() ? "* " : "  ";
      list += Called(i) + " (" + std::to_string(state_.MailsOf(i).size()) + ")\n";
    }
    return list.empty() ? "no folders; give --mail\n" : list;
  }
  std::variant<macro::Program, std::string> LoadMacro(const std::string& file,
                                                      macro::KnownNames& known) override {
    auto loaded = wrenfold::LoadMacro(file, kMacroNames, known);
    if (const auto* reason = std::get_if<std::string>(&loaded)) return *reason;
    return std::get<LoadedMacro>(std::move(loaded)).program;
  }
  std::string Example(std::string_view name) override { return ExampleOf(name); }
  std::size_t PageLines() override { return TheTerminal().IsInteractive() ? TheTerminal().Lines() - 1 : 0; }
  void CompleteBy(Completer complete) override { complete_ = std::move(complete); }

 private:
  // As a macro writes it: "lists/users", with the quotes.
  std::string Called(std::size_t folder) {
    return "\"" + CalledBy(state_.tree(), state_.folders(), folder) + "\"";
  }

  bool HasFolders() const {
    return std::count_if(state_.folders().begin(), state_.folders().end(),
                         [](const MailFolder& folder) { return !folder.removed; }) > 1;
  }

  // "* 3  Subject (file.eml)", of several folders with the mail's; the star marks the open one.
  std::string Line(std::size_t index) {
    std::string line = index == state_.root() ? "* " : "  ";
    line += std::to_string(index + 1) + "  ";
    // A folded subject becomes one line with single blanks.
    for (const char c : ShownHostText(state_.Header(index, "Subject"))) {
      const bool blank = c == '\n' || c == '\t' || c == ' ';
      if (!blank || line.back() != ' ') line += blank ? ' ' : c;
    }
    line += " (" + PathToUtf8(state_.Mail(index).source.filename()) + ")";
    return line + (HasFolders() ? " in " + Called(state_.Mail(index).folder) + "\n" : "\n");
  }

  HostState& state_;
  Completer complete_;
  std::optional<Interruptible> interruptible_;
};

}  // namespace

int RunPrompt(macro::Interpreter& interpreter, const macro::KnownNames& known, HostState& state) {
  TerminalSide side(state);
  std::vector<HelpEntry> host_help;
  for (const HostFunction& function : HostFunctions())
    host_help.push_back({function.name, function.form, function.doc});
  const bool all_well = Prompt(interpreter, side, {MacroTextToHost, kMacroNames, known, host_help}).Run();
  return all_well || TheTerminal().IsInteractive() ? kFine : kFailed;
}

}  // namespace wrenfold
