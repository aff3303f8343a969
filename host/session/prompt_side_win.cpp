#include "host/session/prompt_side_win.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/mail/mail_store.h"
#include "host/session/macro_files.h"
#include "host/session/prompt.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/host_text.h"
#include "host/terminal/terminal_win.h"
#include "host/windows/frame_win.h"

namespace wrenfold {
namespace {

class TerminalSide : public PromptSide {
 public:
  explicit TerminalSide(HostState& state) : state_(state) {}

  std::optional<std::string> ReadLine(std::string_view mark) override {
    Windows::Pump();
    return TheTerminal().ReadLine(mark);
  }
  void Write(std::string_view text) override { TheTerminal().Out(text); }
  void Complain(std::string_view line) override { TheTerminal().Error(std::string(line) + "\n"); }
  std::string PrintValue(const macro::Value& value) override { return ShownHostText(value.Printed()) + "\n"; }

  std::string MailList() override {
    std::string list;
    for (std::size_t i = 0; i < state_.mail_count(); ++i) {
      if (!state_.IsRemoved(i)) list += Line(i);
    }
    return list.empty() ? "no mails; give --mail\n" : list;
  }
  std::optional<std::string> OpenMail(std::size_t number) override {
    if (number == 0 || !state_.Open(number - 1)) return std::nullopt;
    return Line(number - 1);
  }

 private:
  // "* 3  Subject (file.eml)"; the star marks the open one.
  std::string Line(std::size_t index) {
    std::string line = index == state_.root() ? "* " : "  ";
    line += std::to_string(index + 1) + "  ";
    // A folded subject becomes one line with single blanks.
    for (const char c : ShownHostText(state_.Header(index, "Subject"))) {
      const bool blank = c == '\n' || c == '\t' || c == ' ';
      if (!blank || line.back() != ' ') line += blank ? ' ' : c;
    }
    return line + " (" + PathToUtf8(state_.Mail(index).source.filename()) + ")\n";
  }

  HostState& state_;
};

}  // namespace

int RunPrompt(macro::Interpreter& interpreter, HostState& state) {
  TerminalSide side(state);
  const bool all_well = Prompt(interpreter, side, MacroTextToHost).Run();
  return all_well || TheTerminal().IsInteractive() ? kFine : kFailed;
}

}  // namespace wrenfold
