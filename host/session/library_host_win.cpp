#include "host/session/library_host_win.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/files/file_reasons.h"
#include "host/library/export_caller_win.h"
#include "host/library/export_help.h"
#include "host/library/failure_reason.h"
#include "host/library/host_functions_win.h"
#include "host/library/silent_failure_win.h"
#include "host/mail/missing_mail.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/interrupt_win.h"
#include "host/terminal/shown_host_text.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"
#include "host/windows/frame_win.h"
#include "src/catalogue/rows.h"

namespace wrenfold {

namespace {

std::optional<std::string> CheckMacroCall(const std::string& name, std::size_t parameters,
                                          std::span<const std::string_view> others) {
  if (IsHostFunction(name)) return CheckHostFunction(name, parameters);
  std::vector<std::string_view> names(others.begin(), others.end());
  for (const HostFunction& function : HostFunctions()) names.push_back(function.name);
  return CheckCallForm(name, parameters, names);
}

bool HasMacroFunction(std::string_view name) {
  return IsHostFunction(name) || wfinfo::catalogue::FindRow(name) != nullptr;
}

}  // namespace

const macro::HostNames kMacroNames = {CheckMacroCall, HasMacroFunction};

// --- Calls ---

namespace {

constexpr std::size_t kMostOfBox = 1000;  // characters of its text that a reason has

// Whom the library's messages are told.
LibraryHost* g_host = nullptr;

// A message of the library and what it leaves out.
std::string WithWords(std::string message, const std::string& words) {
  if (words.empty()) return message;
  if (message.ends_with('.')) message.pop_back();
  return message + "; " + words;
}

macro::Complaint Stopped(const std::string& name, const std::string& reason) {
  return {name + ": " + reason + " (--strict)"};
}

}  // namespace

LibraryHost::LibraryHost(const Library& library, RequestServer& server, bool strict)
    : library_(library), server_(server), strict_(strict) {
  g_host = this;
}

LibraryHost::~LibraryHost() { g_host = nullptr; }

std::variant<macro::Value, macro::Complaint> LibraryHost::Call(const std::string& name,
                                                               std::span<const macro::Value> parameters) {
  turns_.Called();
  if (IsHostFunction(name)) return CallOwn(name, parameters);
  Made made{name, parameters, "", ""};
  Made* const outer_made = std::exchange(made_, &made);
  const std::uint64_t requests = server_.requests();
  CallUnderWay outer = server_.BeginCall(name);
  auto result = CallExport(library_, name, parameters);
  NoteFileFailure(name, parameters, result);
  NoteMissingWindow(made, requests, result);
  const CallUnderWay call = server_.EndCall(std::move(outer));
  made_ = outer_made;
  if (std::holds_alternative<macro::Complaint>(result)) return result;
  push_timer_.Called(name, parameters, std::get<macro::Value>(result), GetTickCount64());
  return Finished(made, call, std::get<macro::Value>(std::move(result)));
}

// What the library writes itself, without asking the host.
void LibraryHost::NoteFileFailure(const std::string& name, std::span<const macro::Value> parameters,
                                  const std::variant<macro::Value, macro::Complaint>& result) {
  const auto* const value = std::get_if<macro::Value>(&result);
  const bool failed = value != nullptr && value->IsNumber() && value->Number() == 0;
  if (name != "SaveStringToFile" || !failed || parameters.empty() || !parameters[0].IsText()) return;
  server_.state().failure = WhyUnwritable(PathFromUtf8(SystemCharsets().HostToUtf8(parameters[0].Text())));
  server_.NoteFailure();
}

// What asks the window of a mail asks nobody while none stands in front, and reports nothing.
void LibraryHost::NoteMissingWindow(const Made& made, std::uint64_t requests_before,
                                    const std::variant<macro::Value, macro::Complaint>& result) {
  const auto* const value = std::get_if<macro::Value>(&result);
  const auto* const row = wfinfo::catalogue::FindRow(made.name);
  if (value == nullptr || value->IsTrue() || row == nullptr || row->dispatcher != "View") return;
  if (server_.requests() != requests_before || !made.message.empty()) return;
  server_.state().failure = server_.state().HasDraft() ? kMailWindowBehind : kNoMailWindow;
  server_.NoteFailure();
}

std::variant<macro::Value, macro::Complaint> LibraryHost::CallOwn(const std::string& name,
                                                                  std::span<const macro::Value> parameters) {
  std::string& last_reason = server_.state().failure;
  HostCall call{parameters, last_reason};
  auto result = CallHostFunction(name, call);
  const auto* value = std::get_if<macro::Value>(&result);
  if (value == nullptr) return result;
  if (strict_ && call.failed) return Stopped(name, call.reason);
  if (server_.trace().IsOn())
    server_.trace().Call({name, calling_at(), parameters, *value, call.reason}, false);
  if (!call.asks_reason) last_reason = std::move(call.reason);
  return result;
}

std::variant<macro::Value, macro::Complaint> LibraryHost::Finished(const Made& made, const CallUnderWay& call,
                                                                   macro::Value result) {
  std::string reason = server_.state().failure;
  if (!call.unserved.empty()) reason = call.unserved + " is not served by the small host";
  const auto* row = wfinfo::catalogue::FindRow(made.name);
  if (reason.empty() && !made.message.empty())
    reason = WithWords(made.message, RefusedWord(*row, made.parameters));
  const bool failed = call.failed || !call.unserved.empty() || !made.message.empty();
  if (strict_ && failed) return Stopped(made.name, reason);
  if (!call.unserved.empty() && !server_.trace().ShowsEverything())
    TellUnserved(made.name + " is not served by the small host (" + call.unserved + ")");
  TellNoMails(reason);
  if (reason.empty() && !result.IsTrue()) reason = made.box;
  if (reason.empty() && row->result != "Void") reason = WhySilent(library_, *row, made.parameters, result);
  if (result.IsNull()) {
    result = macro::Value::NullBecause(WhyNull(*row, reason));
    if (reason.empty() && row->result != "Void") reason = result.WhyNull();
  }
  server_.state().failure = reason;
  if (server_.trace().IsOn()) {
    server_.trace().Call({made.name, calling_at(), made.parameters, result, reason}, call.traced);
  }
  return result;
}

std::string LibraryHost::Where() const { return ShownLocation(calling_at()); }

// Once for each place; at the prompt each time.
void LibraryHost::TellUnserved(const std::string& reason) {
  const std::string line = Where() + reason;
  if (told_.insert(line).second || Where().empty()) Fail(line);
}

// Once: a macro that reads mails where there are none has only empty answers to show.
void LibraryHost::TellNoMails(const std::string& reason) {
  if (server_.state().mail_count() > 0 || !IsForLackOfMails(reason)) return;
  const std::vector<MailFolder>& folders = server_.state().folders();
  const auto mbox = std::ranges::find(folders, FolderKind::kMbox, &MailFolder::kind);
  const std::string line = mbox == folders.end() ? "no mails were given: --mail MAIL"
                                                 : "no mails lie in " + PathToUtf8(mbox->path);
  if (told_.insert(line).second) Fail(Where() + line);
}

void LibraryHost::ShowMessage(const char* text) {
  const std::string message = ShownHostText(text);
  std::string call;
  if (g_host != nullptr && g_host->made_ != nullptr) {
    Made& made = *g_host->made_;
    g_host->server_.trace().Message(made.name, message);
    call = "  in " + g_host->Where() + ShownCall(made.name, made.parameters) + "\n";
    constexpr std::string_view kFrom = "WFINFO.DLL: ";
    if (made.message.empty()) {
      made.message = message.substr(message.starts_with(kFrom) ? kFrom.size() : 0);
      // A reason is one line.
      std::replace(made.message.begin(), made.message.end(), '\n', ' ');
    }
  }
  TheTerminal().Error(message + "\n" + call);
}

void LibraryHost::ShowBox(const ShownBox& box, BoxFate fate) {
  std::string call;
  if (made_ != nullptr) {
    if (fate != BoxFate::kStands) made_->box = OnOneLine(box.text, kMostOfBox);
    server_.trace().Box({made_->name, calling_at(), box, fate});
    call = "\n  in " + Where() + ShownCall(made_->name, made_->parameters);
  }
  Fail(BoxLine(box, fate) + call);
}

std::uint64_t LibraryHost::PatienceWithBoxes() const { return push_timer_.PatienceAt(GetTickCount64()); }

bool LibraryHost::HasFunction(std::string_view name) const { return HasMacroFunction(name); }

void LibraryHost::Print(std::string_view line) { TheTerminal().Out(ShownHostText(line) + "\n"); }

bool LibraryHost::MayGoOn() {
  return !IsInterrupted() && !server_.state().commands.application.frame_closed &&
         !TheTerminal().WhyOutIsLost() && (!turns_.IsDue(GetTickCount64()) || Windows::Pump());
}

std::string LibraryHost::StopReason() const {
  if (IsInterrupted()) return "stopped by Ctrl+C";
  if (server_.state().commands.application.frame_closed) return kFrameClosed;
  return TheTerminal().WhyOutIsLost().value_or("stopped");
}

// --- The end of a macro ---

void EndMacro(HostState& state) {
  const auto pack = std::exchange(state.folder_state().find_pack_to_restore, std::nullopt);
  if (pack) state.commands.find_pack = *pack;
}

// --- Macros of other windows ---

std::nullopt_t OtherWindowsMacros::NotRun(const std::string& reason) {
  Fail(reason);
  state_.failure = reason;
  return std::nullopt;
}

std::optional<macro::Value> OtherWindowsMacros::Run(std::string_view macro,
                                                    std::span<const macro::Value> parameters) {
  macro::KnownNames known;
  for (std::size_t i = 0; i < parameters.size(); ++i) known.variables.insert("p" + std::to_string(i + 1));
  return Run(Load(SystemCharsets().HostToUtf8(macro), known), parameters);
}

std::optional<macro::Value> OtherWindowsMacros::RunFile(const std::string& file) {
  macro::KnownNames known;
  // Its value is what is wanted of it.
  return Run(LoadMacro(file, kMacroNames, known, true), {});
}

std::optional<macro::Value> OtherWindowsMacros::Run(const MacroOrReason& loaded,
                                                    std::span<const macro::Value> parameters) {
  if (const auto* reason = std::get_if<std::string>(&loaded)) return NotRun(*reason);
  const auto& [file, program] = std::get<LoadedMacro>(loaded);
  macro::Interpreter interpreter(host_);
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    interpreter.SetVariable("p" + std::to_string(i + 1), parameters[i]);
  }
  // What failed in it is not a failure of the call that has it run.
  const std::string failure = std::exchange(state_.failure, "");
  // A macro that runs while another one waits has an end of its own.
  auto pack = std::exchange(state_.folder_state().find_pack_to_restore, std::nullopt);
  const auto problem = interpreter.Run(program);
  EndMacro(state_);
  state_.folder_state().find_pack_to_restore = std::move(pack);
  state_.failure = failure;
  if (problem) return NotRun(Located(file, *problem));
  return interpreter.last_value().value_or(macro::Value::NullBecause("its last statement has no value"));
}

MacroOrReason OtherWindowsMacros::Load(const std::string& text, macro::KnownNames& known) {
  return text.ends_with(".macro") ? LoadMacro(text, kMacroNames, known)
                                  : ReadMacro("macro", text, kMacroNames, known, true);
}

}  // namespace wrenfold
