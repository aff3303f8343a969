// What macros reach: the exports of the library, the host's own functions, and macros of other windows. And
// what is said of a call that went wrong.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "host/library/library_win.h"
#include "host/library/push_timer.h"
#include "host/macro/run.h"
#include "host/macro/runner.h"
#include "host/macro/turns.h"
#include "host/requests/request_server_win.h"
#include "host/session/macro_files.h"
#include "host/terminal/box_text.h"

namespace wrenfold {

// The exports, and the host's own functions.
extern const macro::HostNames kMacroNames;

class LibraryHost : public macro::MacroHost {
 public:
  // `strict`: a call that is not served, that fails in the host or that the library complains of stops
  // the macro.
  LibraryHost(const Library& library, RequestServer& server, bool strict);
  ~LibraryHost() override;

  std::variant<macro::Value, macro::Complaint> Call(const std::string& name,
                                                    std::span<const macro::Value> parameters) override;
  bool HasFunction(std::string_view name) const override;
  void Print(std::string_view line) override;
  // Timers and posted messages of the library have their turn between statements.
  bool MayGoOn() override;
  std::string StopReason() const override;

  // The library's error callback: shows its message (host text), and the call that it is about.
  static void ShowMessage(const char* text);
  // Tells of a box that shows during the call.
  void ShowBox(const ShownBox& box, BoxFate fate);
  // For how many milliseconds a box that shows is left to the macro's own auto-push timer.
  std::uint64_t PatienceWithBoxes() const;

 private:
  // A call of an export as the macro made it.
  struct Made {
    const std::string& name;
    std::span<const macro::Value> parameters;
    std::string message;  // of the library, UTF-8
    std::string box;      // text of the last one that it showed, UTF-8
  };
  // A function that is no export.
  std::variant<macro::Value, macro::Complaint> CallOwn(const std::string& name,
                                                       std::span<const macro::Value> parameters);
  std::variant<macro::Value, macro::Complaint> Finished(const Made& made, const CallUnderWay& call,
                                                        macro::Value result);
  // Says why the library could not write a file.
  void NoteFileFailure(const std::string& name, std::span<const macro::Value> parameters,
                       const std::variant<macro::Value, macro::Complaint>& result);
  void NoteMissingWindow(const Made& made, std::uint64_t requests_before,
                         const std::variant<macro::Value, macro::Complaint>& result);
  // "m.macro:3:1: " of the call under way; "" at the prompt.
  std::string Where() const;
  void TellUnserved(const std::string& reason);
  void TellNoMails(const std::string& reason);

  const Library& library_;
  RequestServer& server_;
  bool strict_;
  macro::Turns turns_;
  PushTimer push_timer_;
  Made* made_ = nullptr;  // the call under way
  std::set<std::string> told_;
};

// Does what a macro asked for the time when it ends.
void EndMacro(HostState& state);

// What a macro has another window run: a macro of its own, with variables of its own.
class OtherWindowsMacros {
 public:
  OtherWindowsMacros(macro::MacroHost& host, HostState& state) : host_(host), state_(state) {
    state.run_macro = [this](std::string_view macro, auto parameters) { return Run(macro, parameters); };
    state.run_macro_file = [this](const std::string& file) { return RunFile(file); };
  }
  ~OtherWindowsMacros() {
    state_.run_macro = nullptr;
    state_.run_macro_file = nullptr;
  }
  OtherWindowsMacros(const OtherWindowsMacros&) = delete;
  OtherWindowsMacros& operator=(const OtherWindowsMacros&) = delete;

 private:
  // Nothing when it could not be run: the user has been told, and HostState::failure says why.
  std::optional<macro::Value> Run(std::string_view macro, std::span<const macro::Value> parameters);
  std::nullopt_t NotRun(const std::string& reason);
  std::optional<macro::Value> RunFile(const std::string& file);
  std::optional<macro::Value> Run(const MacroOrReason& loaded, std::span<const macro::Value> parameters);
  static MacroOrReason Load(const std::string& text, macro::KnownNames& known);

  macro::MacroHost& host_;
  HostState& state_;
};

}  // namespace wrenfold
