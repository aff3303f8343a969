#include "host/session/library_host_win.h"

#include "host/charset/charsets.h"
#include "host/library/export_caller_win.h"
#include "host/library/export_help.h"
#include "host/library/host_functions_win.h"
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
  return result;
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
