// What macros reach: the exports of the library, the host's own functions, and macros of other windows.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "host/library/library_win.h"
#include "host/macro/run.h"
#include "host/macro/runner.h"
#include "host/macro/turns.h"
#include "host/requests/request_server_win.h"
#include "host/session/macro_files.h"

namespace wrenfold {

// Whether a call in a macro can be right: of an export, or of one of the host's own functions.
std::optional<std::string> CheckMacroCall(const std::string& name, std::size_t parameters);

class LibraryHost : public macro::MacroHost {
 public:
  LibraryHost(const Library& library, RequestServer& server) : library_(library), server_(server) {}

  std::variant<macro::Value, macro::Complaint> Call(const std::string& name,
                                                    std::span<const macro::Value> parameters) override;
  bool HasFunction(std::string_view name) const override;
  void Print(std::string_view line) override;
  // Timers and posted messages of the library have their turn between statements.
  bool MayGoOn() override;

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
                                       std::span<const macro::Value> parameters) override;

 private:
  static MacroOrReason Load(const std::string& text);

  macro::MacroHost& host_;
};

}  // namespace wrenfold
