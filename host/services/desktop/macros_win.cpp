// Macros run in another window, and commands posted to the host.
#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "host/charset/charsets.h"
#include "host/library/export_caller_win.h"
#include "host/requests/request_server_win.h"
#include "host/services/desktop/macros_win.h"
#include "host/services/services_win.h"
#include "host/terminal/failure_win.h"
#include "host/windows/frame_win.h"

namespace wrenfold {

namespace {

int g_depth = 0;

constexpr int kMostDepth = 20;  // macros within macros
constexpr std::size_t kMostParameters = 9;

// The slots behind the macro. How many there are nobody knows; those left out are 0.
std::vector<macro::Value> Parameters(const Request& request) {
  std::vector<macro::Value> parameters;
  for (std::size_t slot = 1; slot <= kMostParameters; ++slot) {
    const Slot value = request.Number(slot);
    if (IsPassedText(value)) {
      parameters.emplace_back(std::string(request.Text(slot)));
    } else {
      parameters.emplace_back(value);
    }
  }
  return parameters;
}

std::int64_t NumberOf(const macro::Value& value) { return value.IsNumber() ? value.Number() : 1; }

Answer RunIn(HWND window, Request& request) {
  if (!request.state.run_macro) return request.Fail("nobody runs macros here");
  if (g_depth >= kMostDepth)
    return request.Fail("macros stand at most " + std::to_string(kMostDepth) + " deep in one another");
  const Windows::Acting acting(window);
  ++g_depth;
  const std::string macro(request.Text(0));
  const auto value = request.state.run_macro(macro, Parameters(request));
  --g_depth;
  if (!value) return request.Fail(std::string(request.state.failure));
  return Request::AnswerNumber(NumberOf(*value));
}

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

Answer RunHere(Request& request) { return RunIn(Windows::Receiver(), request); }
Answer RunInMain(Request& request) { return RunIn(Windows::Frame(), request); }

// Nothing has to be done before or after a macro waits for another window.
Answer NothingWanted(Request&) { return Request::AnswerNumber(0); }

Answer CarryOutPosted(Request&) {
  Windows::Pump();
  return Request::AnswerNumber(1);
}

constexpr Service kServices[] = {
    {45, "T", RunHere, "[runs the macro](#macros-in-other-windows) in the window asked"},
    {160, "T", RunInMain, "[runs the macro](#macros-in-other-windows) in the frame"},
    {278, "", NothingWanted, "0: nothing is to be done before a macro waits for another window"},
    {279, "", NothingWanted, "0: nothing is to be done after a macro waited for another window"},
    {319, "", CarryOutPosted, "carries out what waits in the message queue: 1"},
};

}  // namespace

const ServiceFamily kMacrosServices = {kServices, {}};

namespace {

// nullopt when it could not be run to its end.
std::optional<macro::Value> RunBeforeSending(HostState& state, const std::string& file) {
  if (!state.run_macro_file || g_depth >= kMostDepth) return std::nullopt;
  const RunningFor running(state.writing, MacroReason::kBeforeSending, file);
  ++g_depth;
  auto value = state.run_macro_file(file);
  --g_depth;
  return value;
}

}  // namespace

std::optional<std::string> WhyHeldBack(HostState& state) {
  const std::string file = state.writing.send_macro;
  if (file.empty()) return std::nullopt;
  const std::string macro = "the macro before sending, " + file + ", ";
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
