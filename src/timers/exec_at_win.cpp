#include "src/timers/exec_at_win.h"

#include "src/bridge/host_protocol.h"
#include "src/bridge/host_window_win.h"
#include "src/bridge/report_win.h"
#include "src/timers/stable_slots_win.h"

namespace wfinfo {
namespace {

constexpr int kCodeExecute = 45;
constexpr int kCodeWaitBegins = 278;
constexpr int kCodeWaitEnds = 279;
constexpr UINT kPatienceMs = 20000;

// What the host may want after the wait, as flags in its answer.
constexpr Slot kWantsMessage = 0x100;
constexpr Slot kWantsCommand = 0x200;
constexpr WPARAM kWantedCommand = 40365;

bool RunsMacros(HWND window) {
  return IsWindow(window) && (HasClass(window, kFrameClass) || HasClass(window, kOuterViewClass));
}

Slot Tell(HWND host, int code) { return SendMessageA(host, kHostRequest, static_cast<WPARAM>(code), 0); }

void EndWait(HWND host) {
  const Slot wanted = Tell(host, kCodeWaitEnds);
  if ((wanted & kWantsMessage) != 0) SendMessageA(host, kHostWaitOver, 0, 0);
  if ((wanted & kWantsCommand) != 0) SendMessageA(host, WM_COMMAND, kWantedCommand, 0);
}

bool SendAndWait(HWND window, Slot* slots, DWORD_PTR* answer) {
  g_inExecAt = 1;
  const LRESULT sent = SendMessageTimeoutA(window, kHostRequest, kCodeExecute,
                                           reinterpret_cast<LPARAM>(slots), SMTO_NORMAL, kPatienceMs, answer);
  g_inExecAt = 0;
  return sent != 0;
}

}  // namespace

Slot ExecuteAt(HWND window, Slot* slots) {
  if (!IsText(reinterpret_cast<const void*>(slots[0]))) return 0;
  if (!RunsMacros(window)) {
    ReportError({"The 1st parameter of ExecAt is invalid.", "ExecAtの第１パラメータが正しくありません。"});
    return 0;
  }
  const HWND host = FindHostWindow(SearchMode::kFrameTarget, false, 0);
  const bool elsewhere = host != nullptr && host != window;
  const StableSlots stable(slots);  // the host's answers end texts of the host
  if (stable.Failed()) return 0;
  if (elsewhere) Tell(host, kCodeWaitBegins);
  DWORD_PTR answer = 0;
  const bool answered = SendAndWait(window, slots, &answer);
  if (elsewhere) EndWait(host);
  if (answered) return static_cast<Slot>(answer);
  ReportError({"ExecAt dead locked or timed out.",
               "ExecAtでデッドロックが発生したか、または処理が終わるのを待ちきれませんでした。"});
  return 0;
}

}  // namespace wfinfo
