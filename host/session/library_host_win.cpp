#include "host/session/library_host_win.h"

#include "host/charset/charsets.h"
#include "host/library/export_caller_win.h"
#include "host/library/export_help.h"
#include "host/library/host_functions_win.h"
#include "host/mail/file_reasons.h"
#include "host/mail/mail_store.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/host_text.h"
#include "host/terminal/terminal_win.h"
#include "host/windows/frame_win.h"
#include "src/catalogue/rows.h"

namespace wrenfold {

std::optional<std::string> CheckMacroCall(const std::string& name, std::size_t parameters) {
  return IsHostFunction(name) ? CheckHostFunction(name, parameters) : CheckCallForm(name, parameters);
}

// --- Calls ---

std::variant<macro::Value, macro::Complaint> LibraryHost::Call(const std::string& name,
                                                               std::span<const macro::Value> parameters) {
  turns_.Called();
  if (IsHostFunction(name)) return CallHostFunction(name, parameters);
  server_.set_calling(name);
  auto result = CallExport(library_, name, parameters);
  server_.set_calling("");
  NoteFileFailure(name, parameters, result);
  return result;
}

// What the library writes itself, without asking the host.
void LibraryHost::NoteFileFailure(const std::string& name, std::span<const macro::Value> parameters,
                                  const std::variant<macro::Value, macro::Complaint>& result) {
  const auto* const value = std::get_if<macro::Value>(&result);
  const bool failed = value != nullptr && value->IsNumber() && value->Number() == 0;
  if (name != "SaveStringToFile" || !failed || parameters.empty() || !parameters[0].IsText()) return;
  server_.NoteFailure(WhyUnwritable(PathFromUtf8(SystemCharsets().HostToUtf8(parameters[0].Text()))));
}

bool LibraryHost::HasFunction(std::string_view name) const {
  return IsHostFunction(name) || wfinfo::catalogue::FindRow(name) != nullptr;
}

void LibraryHost::Print(std::string_view line) { TheTerminal().Out(ShownHostText(line) + "\n"); }

bool LibraryHost::MayGoOn() { return !turns_.IsDue(GetTickCount64()) || Windows::Pump(); }

// --- Macros of other windows ---

std::optional<macro::Value> OtherWindowsMacros::RunMacro(std::string_view macro,
                                                         std::span<const macro::Value> parameters) {
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

MacroOrReason OtherWindowsMacros::Load(const std::string& text) {
  return text.ends_with(".macro") ? LoadMacro(text, CheckMacroCall)
                                  : ReadMacro("macro", text, CheckMacroCall, true);
}

}  // namespace wrenfold
