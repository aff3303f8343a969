// wrenfold.exe: from the command line to macros that run on real mails.
//
//   options -> macros read and checked -> mails -> library and hand-over -> windows -> macros -> prompt
//
// Everything that can be wrong with the input is found before the first macro runs.
#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "host/base/version.h"
#include "host/base/whole_file.h"
#include "host/charset/charsets.h"
#include "host/library/export_caller_win.h"
#include "host/library/export_help.h"
#include "host/library/host_functions_win.h"
#include "host/library/library_win.h"
#include "host/macro/check.h"
#include "host/macro/run.h"
#include "host/macro/runner.h"
#include "host/macro/turns.h"
#include "host/mapi/register_win.h"
#include "host/mapi/server_win.h"
#include "host/requests/host_state.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/session/options.h"
#include "host/session/prompt.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"
#include "host/windows/frame_win.h"
#include "src/catalogue/rows.h"

namespace wrenfold {
namespace {

constexpr int kFine = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

int Fail(const std::string& reason, int code = kFailed) {
  TheTerminal().Error("wrenfold: " + reason + "\n");
  return code;
}

std::string ToHost(std::string_view utf8) { return SystemCharsets().Utf8ToHost(utf8); }
std::string Shown(std::string_view host_text) { return Printable(SystemCharsets().HostToUtf8(host_text)); }

// --- What the library calls ---

void ShowMessage(const char* text) { TheTerminal().Error(Shown(text) + "\n"); }
void ShowLogLine(const char* text, unsigned number) {
  TheTerminal().Error("log " + std::to_string(number) + ": " + Shown(text) + "\n");
}
void ShowTraceLine(std::string_view line) { TheTerminal().Error(line); }

bool SystemIsJapanese() { return PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_JAPANESE; }

// --- Macros ---

// Whether a call in a macro can be right: of an export, or of one of the host's own functions.
std::optional<std::string> CheckMacroCall(const std::string& name, std::size_t parameters) {
  return IsHostFunction(name) ? CheckHostFunction(name, parameters) : CheckCallForm(name, parameters);
}

struct LoadedMacro {
  std::string file;  // as given
  macro::Program program;
};

std::string Located(const std::string& file, const macro::Problem& problem) {
  return file + ":" + std::to_string(problem.place.line) + ":" + std::to_string(problem.place.column) + ": " +
         problem.text;
}

std::variant<LoadedMacro, std::string> ReadMacro(const std::string& file, const std::string& source,
                                                 bool bare_expressions) {
  auto parsed = macro::Parse(source, {ToHost, bare_expressions});
  if (const auto* problem = std::get_if<macro::Problem>(&parsed)) return Located(file, *problem);
  auto program = std::get<macro::Program>(std::move(parsed));
  if (const auto problem = macro::CheckCalls(program, CheckMacroCall)) return Located(file, *problem);
  return LoadedMacro{file, std::move(program)};
}

std::variant<LoadedMacro, std::string> LoadMacro(const std::string& file) {
  const auto source = ReadWholeFile(PathFromUtf8(file));
  if (!source) return "cannot read the macro " + file;
  return ReadMacro(file, *source, false);
}

class LibraryHost : public macro::MacroHost {
 public:
  LibraryHost(const Library& library, RequestServer& server) : library_(library), server_(server) {}

  std::variant<macro::Value, macro::Complaint> Call(const std::string& name,
                                                    std::span<const macro::Value> parameters) override {
    turns_.Called();
    if (IsHostFunction(name)) return CallHostFunction(name, parameters);
    server_.set_calling(name);
    auto result = CallExport(library_, name, parameters);
    server_.set_calling("");
    return result;
  }
  bool HasFunction(std::string_view name) const override {
    return IsHostFunction(name) || wfinfo::catalogue::FindRow(name) != nullptr;
  }
  void Print(std::string_view line) override { TheTerminal().Out(Shown(line) + "\n"); }
  // Timers and posted messages of the library have their turn between statements.
  bool MayGoOn() override { return !turns_.IsDue(GetTickCount64()) || Windows::Pump(); }

 private:
  const Library& library_;
  RequestServer& server_;
  macro::Turns turns_;
};

// What a macro has another window run: a macro of its own, with variables of its own.
class OtherWindowsMacros : public MacroRunner {
 public:
  explicit OtherWindowsMacros(macro::MacroHost& host) : host_(host) { SetMacroRunner(this); }
  ~OtherWindowsMacros() override { SetMacroRunner(nullptr); }

  std::optional<macro::Value> RunMacro(std::string_view macro,
                                       std::span<const macro::Value> parameters) override {
    const auto loaded = Load(SystemCharsets().HostToUtf8(macro));
    if (const auto* reason = std::get_if<std::string>(&loaded)) return Fail(*reason), std::nullopt;
    const auto& [file, program] = std::get<LoadedMacro>(loaded);
    macro::Interpreter interpreter(host_);
    for (std::size_t i = 0; i < parameters.size(); ++i) {
      interpreter.SetVariable("p" + std::to_string(i + 1), parameters[i]);
    }
    if (const auto problem = interpreter.Run(program)) return Fail(Located(file, *problem)), std::nullopt;
    return interpreter.last_value().value_or(macro::Value(1));
  }

 private:
  static std::variant<LoadedMacro, std::string> Load(const std::string& text) {
    return text.ends_with(".macro") ? LoadMacro(text) : ReadMacro("macro", text, true);
  }

  macro::MacroHost& host_;
};

// --- Prompt ---

class TerminalSide : public PromptSide {
 public:
  explicit TerminalSide(HostState& state) : state_(state) {}

  std::optional<std::string> ReadLine(std::string_view mark) override {
    Windows::Pump();
    return TheTerminal().ReadLine(mark);
  }
  void Write(std::string_view text) override { TheTerminal().Out(text); }
  void Complain(std::string_view line) override { TheTerminal().Error(std::string(line) + "\n"); }
  std::string PrintValue(const macro::Value& value) override { return Shown(value.Printed()) + "\n"; }

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
    for (const char c : Shown(state_.Header(index, "Subject"))) {
      const bool blank = c == '\n' || c == '\t' || c == ' ';
      if (!blank || line.back() != ' ') line += blank ? ' ' : c;
    }
    return line + " (" + PathToUtf8(state_.Mail(index).source.filename()) + ")\n";
  }

  HostState& state_;
};

// --- The program ---

int PrintVersion() {
  const auto loaded = Library::Load();
  TheTerminal().Out(std::string("wrenfold ") + kHostVersion + "\n");
  if (const auto* reason = std::get_if<std::string>(&loaded)) return Fail(*reason);
  TheTerminal().Out("WFINFO.dll interface " + std::to_string(std::get<Library>(loaded).interface_version()) +
                    "\n");
  return kFine;
}

// Does what a macro asked for the time when it ends.
void EndMacro(HostState& state) {
  std::optional<std::string>& pack = state.folder_state().find_pack_to_restore;
  if (pack) state.commands.find_pack = *std::move(pack);
  pack.reset();
}

int RunMacros(const std::vector<LoadedMacro>& macros, macro::Interpreter& interpreter, HostState& state) {
  for (const LoadedMacro& loaded : macros) {
    const auto problem = interpreter.Run(loaded.program);
    EndMacro(state);
    if (problem) return Fail(Located(loaded.file, *problem));
  }
  return kFine;
}

int RunPrompt(macro::Interpreter& interpreter, HostState& state) {
  TerminalSide side(state);
  const bool all_well = Prompt(interpreter, side, ToHost).Run();
  // A person saw what went wrong; a script learns it from the exit code.
  return all_well || TheTerminal().IsInteractive() ? kFine : kFailed;
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
  macro::Interpreter interpreter(host);
  int result = RunMacros(macros, interpreter, state);
  if (result == kFine && options.prompt) result = RunPrompt(interpreter, state);
  Summarise(server, options.trace);
  return result;
}

// --- Simple MAPI ---

void Complain(const std::string& line) { TheTerminal().Error("wrenfold: " + Printable(line) + "\n"); }

// The settings file of the home, and what the command line says over it.
std::variant<MapiSettings, std::string> SettingsOf(const std::string& home, const Options& options) {
  auto parsed = ParseMapiSettings(ReadWholeFile(PathFromUtf8(home) / "settings.txt").value_or(""));
  if (auto* settings = std::get_if<MapiSettings>(&parsed)) {
    if (options.slow_ms) settings->slow_ms = *options.slow_ms;
    if (options.modal_ms) settings->modal_ms = options.modal_ms;
    settings->deaf |= options.deaf;
    settings->die |= options.die;
  }
  return parsed;
}

int Serve(const Options& options) {
  const std::string home = MapiHome(options.home);
  const auto settings = SettingsOf(home, options);
  if (const auto* wrong = std::get_if<std::string>(&settings)) return Fail("settings.txt, " + *wrong);
  return RunMapiServer(home, std::get<MapiSettings>(settings), Complain);
}

bool Agrees(const std::string& question) {
  TheTerminal().Out(question + " [y/N]\n");
  const auto answer = TheTerminal().ReadLine("");
  return answer && (*answer == "y" || *answer == "Y" || *answer == "yes");
}

int Register(const Options& options) {
  const Consent consent = options.yes ? Consent([](const std::string&) { return true; }) : Consent(Agrees);
  const auto reason = options.register_mapi ? RegisterMapi(consent) : UnregisterMapi();
  if (reason) return Fail(*reason);
  TheTerminal().Out(options.register_mapi ? "Wrenfold is the system's mail client now.\n"
                                          : "Wrenfold is no longer registered.\n");
  return kFine;
}

// accounts.txt beside the first mail; without mails, beside the program.
std::filesystem::path DefaultAccounts(const Options& options) {
  constexpr char kName[] = "accounts.txt";
  std::error_code error;
  if (options.mails.empty()) {
    std::wstring program(32768, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
    return std::filesystem::path(program).parent_path() / kName;
  }
  const std::filesystem::path mails = PathFromUtf8(options.mails[0]);
  return (std::filesystem::is_directory(mails, error) ? mails : mails.parent_path()) / kName;
}

// Opens what the keyword commands work with; returns why that is not possible.
std::optional<std::string> OpenCommandFiles(const Options& options, CommandState& commands) {
  const auto accounts =
      options.accounts.empty() ? DefaultAccounts(options) : PathFromUtf8(options.accounts.back());
  if (auto reason = commands.accounts.Open(accounts)) return reason;
  if (!options.books.empty()) {
    if (auto reason = commands.book.Open(PathFromUtf8(options.books.back()))) return reason;
  }
  if (options.templates.empty()) return std::nullopt;
  const std::filesystem::path folder = PathFromUtf8(options.templates.back());
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error)) return "cannot read the templates " + PathToUtf8(folder);
  commands.templates.Open(folder);
  return std::nullopt;
}

int Run(const std::vector<std::string>& arguments) {
  const auto parsed = ParseCommandLine(arguments);
  if (const auto* wrong = std::get_if<UsageError>(&parsed)) {
    return Fail(wrong->text + "\n" + std::string(kUsage), kWrongUsage);
  }
  const auto& options = std::get<Options>(parsed);
  if (options.help) return TheTerminal().Out(kUsage), kFine;
  if (options.version) return PrintVersion();
  if (options.register_mapi || options.unregister_mapi) return Register(options);
  if (options.serve) return Serve(options);

  std::vector<LoadedMacro> macros;
  for (const std::string& file : options.macros) {
    auto loaded = LoadMacro(file);
    if (const auto* reason = std::get_if<std::string>(&loaded)) return Fail(*reason);
    macros.push_back(std::get<LoadedMacro>(std::move(loaded)));
  }
  HostState state;
  state.set_read_only(options.read_only);
  const auto unreadable =
      options.strict_mails ? MailStore::Unreadable::kRefuse : MailStore::Unreadable::kSkip;
  for (const std::string& mail : options.mails) {
    if (const auto reason = state.AddMails(PathFromUtf8(mail), unreadable)) return Fail(*reason);
  }
  for (const std::string& reason : state.skipped_mails()) Complain(reason + " (skipped)");
  if (const auto reason = OpenCommandFiles(options, state.commands)) return Fail(*reason);
  auto library = Library::Load();
  if (const auto* reason = std::get_if<std::string>(&library)) return Fail(*reason);
  return Work(options, macros, state, std::get<Library>(library));
}

}  // namespace
}  // namespace wrenfold

int wmain(int count, wchar_t** arguments) {
  std::vector<std::string> utf8;
  for (int i = 1; i < count; ++i) {
    utf8.push_back(wrenfold::WideToUtf8(reinterpret_cast<const char16_t*>(arguments[i])));
  }
  return wrenfold::Run(utf8);
}
