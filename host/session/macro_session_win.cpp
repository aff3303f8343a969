#include "host/session/macro_session_win.h"

#include <windows.h>

#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/library/library_win.h"
#include "host/macro/run.h"
#include "host/requests/host_state.h"
#include "host/requests/request_server_win.h"
#include "host/services/draft_side_win.h"
#include "host/services/services_win.h"
#include "host/session/library_host_win.h"
#include "host/session/macro_files.h"
#include "host/session/prompt_side_win.h"
#include "host/session/work_files_win.h"
#include "host/session/written_mails_win.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/host_text.h"
#include "host/terminal/terminal_win.h"
#include "host/windows/frame_win.h"

namespace wrenfold {
namespace {

// --- What the library calls ---

void ShowMessage(const char* text) { TheTerminal().Error(ShownHostText(text) + "\n"); }
void ShowLogLine(const char* text, unsigned number) {
  TheTerminal().Error("log " + std::to_string(number) + ": " + ShownHostText(text) + "\n");
}
void ShowTraceLine(std::string_view line) { TheTerminal().Error(line); }

bool SystemIsJapanese() { return PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_JAPANESE; }

// --- The run ---

// Does what a macro asked for the time when it ends.
void EndMacro(HostState& state) {
  std::optional<std::string>& pack = state.folder_state().find_pack_to_restore;
  if (pack) state.commands.find_pack = *std::move(pack);
  pack.reset();
}

int RunMacros(const std::vector<LoadedMacro>& macros, macro::Interpreter& interpreter, HostState& state) {
  for (const LoadedMacro& loaded : macros) {
    state.writing.macro = loaded.file;
    const auto problem = interpreter.Run(loaded.program);
    EndMacro(state);
    if (problem) return Fail(Located(loaded.file, *problem));
  }
  return kFine;
}

void Summarise(const RequestServer& server, bool trace) {
  if (trace) {
    TheTerminal().Error("trace: " + server.Summary() + "\n");
  } else if (server.not_served() > 0) {
    TheTerminal().Error("wrenfold: " + server.Summary() + "\n");
  }
}

int Work(const Options& options, const std::vector<LoadedMacro>& macros, HostState& state, Library& library) {
  library.HandOver(options.english.value_or(!SystemIsJapanese()), ShowMessage, ShowLogLine);
  RequestServer server(state, AllServices(), options.trace ? ShowTraceLine : nullptr);
  const Windows windows(server);
  if (!windows.IsComplete()) return Fail("cannot create the host's windows");
  LibraryHost host(library, server);
  const OtherWindowsMacros other_windows(host);
  const WrittenMail written_mail(state);
  macro::Interpreter interpreter(host);
  int result = RunMacros(macros, interpreter, state);
  state.writing.macro.clear();
  if (result == kFine && options.prompt) result = RunPrompt(interpreter, state);
  if (!KeepAtEnd(state)) result = kFailed;
  Summarise(server, options.trace);
  return result;
}

}  // namespace

int RunMacroSession(const Options& options) {
  std::vector<LoadedMacro> macros;
  for (const std::string& file : options.macros) {
    auto loaded = LoadMacro(file, CheckMacroCall);
    if (const auto* reason = std::get_if<std::string>(&loaded)) return Fail(*reason);
    macros.push_back(std::get<LoadedMacro>(std::move(loaded)));
  }
  HostState state;
  state.set_read_only(options.read_only);
  if (const auto reason = OpenWorkFiles(options, state)) return Fail(*reason);
  auto library = Library::Load();
  if (const auto* reason = std::get_if<std::string>(&library)) return Fail(*reason);
  return Work(options, macros, state, std::get<Library>(library));
}

}  // namespace wrenfold
