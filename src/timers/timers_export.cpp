// Exports that act later than their own call: the auto-push timer in its three forms, and macros run in
// another window of the host.
#include <windows.h>

#include <cstdarg>
#include <optional>

#include "src/base/variadic_slots_win.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"
#include "src/timers/auto_push_win.h"
#include "src/timers/button_words.h"
#include "src/timers/exec_at_win.h"

using namespace wfinfo;

namespace {

constexpr int kCodeRunMacro = 160;
constexpr unsigned kMillisecondsOfSecond = 1000;

// The button that a macro names, or nothing after the report. A bad pointer is reported twice: by the check
// of the text, and as a button that is not known.
std::optional<std::uint32_t> ButtonOrReport(const char* button) {
  if (button == nullptr) return 0;
  const std::optional<std::uint32_t> id = IsText(button) ? ButtonOf(button) : std::nullopt;
  if (!id) {
    ReportError({"The 2nd parameter of SetAutoPushTimer series function is invalid",
                 "SetAutoPushTimer系関数の第２パラメータがおかしいです。"});
  }
  return id;
}

}  // namespace

long long ExecAt(void* window, ...) noexcept {
  va_list rest;
  va_start(rest, window);
  const long long answer = ExecuteAt(static_cast<HWND>(window), SlotsOf(rest));
  va_end(rest);
  return answer;
}

long long ExecAtMain(const char* text, ...) noexcept {
  if (!IsText(text)) return 0;
  va_list rest;
  va_start(rest, text);
  Slot* const block = SlotsOf(rest) - 1;
  block[0] = ToSlot(text);  // a named parameter's home slot is only reserved, not filled
  const long long answer = SendHostRequest(kCodeRunMacro, block);
  va_end(rest);
  return answer;
}

long long SetAutoPushTimerMilli(unsigned milliseconds, const char* button) noexcept {
  StopAutoPush();
  const std::optional<std::uint32_t> id = ButtonOrReport(button);
  return id && PushNextDialog(milliseconds, *id) ? 1 : 0;
}

long long SetAutoPushTimer(unsigned seconds, const char* button) noexcept {
  return SetAutoPushTimerMilli(seconds * kMillisecondsOfSecond, button);
}

long long SetAutoPushTimerEver(void* window, const char* button) noexcept {
  StopAutoPush();
  const std::optional<std::uint32_t> id = ButtonOrReport(button);
  return id && PushEveryPopup(static_cast<HWND>(window), *id) ? 1 : 0;
}

long long StopAutoPushTimer() noexcept {
  StopAutoPush();
  return 0;
}

long long StopAutoPushTimer2() noexcept {
  StopOwnAutoPush();
  return 0;
}
