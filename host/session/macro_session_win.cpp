#include "host/session/macro_session_win.h"

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/base/paths.h"
#include "host/library/host_functions_win.h"
#include "host/library/library_win.h"
#include "host/library/traced_words.h"
#include "host/macro/run.h"
#include "host/requests/host_state.h"
#include "host/requests/request_server_win.h"
#include "host/requests/trace.h"
#include "host/services/services_win.h"
#include "host/services/writing/draft_side_win.h"
#include "host/session/drafts_of_run_win.h"
#include "host/session/library_host_win.h"
#include "host/session/macro_files.h"
#include "host/session/prompt_side_win.h"
#include "host/session/work_files_win.h"
#include "host/shared/transport_win.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/interrupt_win.h"
#include "host/terminal/own_code_win.h"
#include "host/terminal/progress_win.h"
#include "host/terminal/shown_host_text.h"
#include "host/terminal/terminal_win.h"
#include "host/windows/box_watch_win.h"
#include "host/windows/frame_win.h"

namespace wrenfold {
namespace {

// --- What the library calls ---

void ShowLogLine(const char* text, unsigned number) {
  TheTerminal().Error("log " + std::to_string(number) + ": " + ShownHostText(text) + "\n");
}

bool SystemIsJapanese() { return PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_JAPANESE; }

// Whole lines as they come, so that a run that ends early leaves what it did.
class TraceFile {
 public:
  TraceFile() = default;
  ~TraceFile() {
    if (IsOpen()) CloseHandle(file_);
  }
  TraceFile(const TraceFile&) = delete;
  TraceFile& operator=(const TraceFile&) = delete;

  bool Open(const std::string& name) {
    file_ = CreateFileW(PathFromUtf8(name).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                        FILE_ATTRIBUTE_NORMAL, nullptr);
    return IsOpen();
  }
  bool IsOpen() const { return file_ != INVALID_HANDLE_VALUE; }
  void Write(std::string_view line) {
    DWORD written = 0;
    WriteFile(file_, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  }

 private:
  HANDLE file_ = INVALID_HANDLE_VALUE;
};

std::optional<std::string> WrongTraceList(const std::vector<std::string>& words) {
  std::vector<std::string_view> names;
  for (const HostFunction& function : HostFunctions()) names.push_back(function.name);
  return WrongTracedWord(words, names);
}

// --- The run ---

int RunMacros(const std::vector<LoadedMacro>& macros, macro::Interpreter& interpreter, HostState& state,
              const Trace& trace) {
  const Interruptible interruptible;
  for (const LoadedMacro& loaded : macros) {
    state.writing.macro = loaded.file;
    const auto problem = interpreter.Run(loaded.program);
    EndMacro(state);
    const bool closed = state.commands.application.frame_closed;
    if (state.commands.application.exit_asked && !closed) return kFine;
    if (!problem) continue;
    const std::string why = Located(loaded.file, *problem);
    trace.Stopped(why);
    return Fail(why, IsInterrupted() || closed ? kInterrupted : kFailed);
  }
  return kFine;
}

void TellWaiting(HostState& state) {
  const std::string waiting = WaitingMails(state);
  if (!waiting.empty()) Complain(waiting);
}

// What the end of the program must not lose: a transmission that still runs, and mails that nobody sent.
// A macro that did not come to its end might have cancelled what it began.
void EndTransmission(HostState& state, bool all_well) {
  if (!all_well) StopTransmission(state);
  FinishTransmission(state);
  TellWaiting(state);
}

void Summarise(const RequestServer& server, bool trace) {
  if (trace) {
    TheTerminal().Error("trace: " + server.Summary() + "\n");
  } else if (server.not_served() > 0) {
    TheTerminal().Error("wrenfold: " + server.Summary() + "\n");
  }
}

int Work(const Options& options, const std::vector<LoadedMacro>& macros, const macro::KnownNames& known,
         HostState& state, Library& library) {
  const OwnCode own_code;
  library.HandOver(options.english.value_or(!SystemIsJapanese()), LibraryHost::ShowMessage, ShowLogLine);
  TraceFile json;
  if (!options.trace_json.empty() && !json.Open(options.trace_json.back()))
    return Fail("cannot write the trace " + options.trace_json.back());
  const Trace trace(options.trace ? [](std::string_view line) { TheTerminal().Error(line); } : Trace::Line(),
                    json.IsOpen() ? [&json](std::string_view line) { json.Write(line); } : Trace::Line(),
                    options.traced);
  RequestServer server(state, AllServices(), trace);
  const Windows windows(server);
  if (!windows.IsComplete()) return Fail("cannot create the host's windows");
  LibraryHost host(library, server, options.strict);
  const BoxWatch boxes(options.yes, library.module(),
                       {[&host](const ShownBox& box, BoxFate fate) { host.ShowBox(box, fate); },
                        [&host] { return host.PatienceWithBoxes(); }});
  const OtherWindowsMacros other_windows(host, state);
  const WrittenMail written_mail(state);
  const LastWords last_words([&state] {
    KeepAtEnd(state);
    state.SaveMarks();
    TellWaiting(state);
  });
  macro::Interpreter interpreter(host);
  int result = RunMacros(macros, interpreter, state, trace);
  state.writing.macro.clear();
  const bool macros_ended = result == kFine;
  const bool goes_on = macros_ended && !state.commands.application.exit_asked;
  if (goes_on && options.prompt) result = RunPrompt(interpreter, known, state);
  EndTransmission(state, macros_ended);
  if (!KeepAtEnd(state)) result = kFailed;
  if (!state.SaveMarks()) result = kFailed;
  if (result == kFine && HasUnsentMails(state)) result = kFailed;
  Summarise(server, options.trace);
  return result;
}

// Mails that its macro cannot look at would all be held back.
std::optional<std::string> WhyNoSendMacro(const Options& options) {
  if (options.send_macros.empty()) return std::nullopt;
  macro::KnownNames known;
  const auto loaded = LoadMacro(options.send_macros.back(), kMacroNames, known, true);
  const auto* const reason = std::get_if<std::string>(&loaded);
  return reason == nullptr ? std::nullopt : std::optional("--send-macro: " + *reason);
}

}  // namespace

int RunMacroSession(const Options& options) {
  if (const auto wrong = WrongTraceList(options.traced)) return Fail("--trace=: " + *wrong, kWrongUsage);
  std::vector<LoadedMacro> macros;
  macro::KnownNames known;
  for (const std::string& file : options.macros) {
    auto loaded = LoadMacro(file, kMacroNames, known);
    if (const auto* reason = std::get_if<std::string>(&loaded)) return Fail(*reason);
    macros.push_back(std::get<LoadedMacro>(std::move(loaded)));
  }
  if (const auto reason = WhyNoSendMacro(options)) return Fail(*reason);
  ShowProgressOnTerminal();
  HostState state;
  state.complain = Complain;
  state.set_read_only(options.read_only);
  if (const auto reason = OpenWorkFiles(options, state)) return Fail(*reason);
  auto library = Library::Load();
  if (const auto* reason = std::get_if<std::string>(&library)) return Fail(*reason);
  return Work(options, macros, known, state, std::get<Library>(library));
}

}  // namespace wrenfold
