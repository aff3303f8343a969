#include "host/shared/inner_macros_win.h"

#include <utility>

#include "host/terminal/failure_win.h"

namespace wrenfold {
namespace {

int g_depth = 0;

// The reason and the name that macros ask for, while one runs.
class RunningFor {
 public:
  RunningFor(WritingState& writing, MacroReason reason, std::string macro)
      : writing_(writing),
        reason_(std::exchange(writing.reason, reason)),
        macro_(std::exchange(writing.macro, std::move(macro))) {}
  ~RunningFor() {
    writing_.reason = reason_;
    writing_.macro = std::move(macro_);
  }
  RunningFor(const RunningFor&) = delete;
  RunningFor& operator=(const RunningFor&) = delete;

 private:
  WritingState& writing_;
  MacroReason reason_;
  std::string macro_;
};

// nullopt when it could not be run to its end.
std::optional<macro::Value> RunBeforeSending(HostState& state, const std::string& file) {
  const MacroInMacro inner;
  if (!state.run_macro_file || inner.IsTooDeep()) return std::nullopt;
  const RunningFor running(state.writing, MacroReason::kBeforeSending, file);
  return state.run_macro_file(file);
}

}  // namespace

MacroInMacro::MacroInMacro() { ++g_depth; }
MacroInMacro::~MacroInMacro() { --g_depth; }
bool MacroInMacro::IsTooDeep() const { return g_depth > kMostDepth; }

std::optional<std::string> WhyHeldBack(HostState& state) {
  const std::string file = state.writing.send_macro;
  if (file.empty()) return std::nullopt;
  const std::string macro = "the macro before sending, " + file + ", ";
  if (state.writing.reason == MacroReason::kBeforeSending) return macro + "cannot send a mail itself";
  const std::size_t begun = state.writing.begun;
  const auto value = RunBeforeSending(state, file);
  // A refusal is the macro's own business; whoever wrote it has to hear of the others.
  if (value && value->IsNumber() && value->Number() == 0) return macro + "refused the mail";
  std::string reason;
  if (!value) {
    reason = macro + "could not be run to its end";
  } else if (!value->IsNumber()) {
    reason = macro + "does not end in a number, which would let the mail go";
  } else if (!state.HasDraft() || state.writing.begun != begun) {
    reason = macro + "closed the mail";
  }
  if (reason.empty()) return std::nullopt;
  Tell("the mail is held back: " + reason);
  return reason;
}

}  // namespace wrenfold
