#include "src/timers/auto_push_win.h"

#include <algorithm>
#include <utility>

#include "src/base/unique_win.h"
#include "src/bridge/host_window_win.h"
#include "src/timers/stray_timers_win.h"

namespace wfinfo {

UINT_PTR g_autoPushTimer = 0;        // 0: stopped
DWORD g_autoPushThread = 0;          // the thread that set the timer, 0 when stopped
std::uint32_t g_autoPushDelay = 0;   // milliseconds that a found dialog stays
std::uint32_t g_autoPushButton = 0;  // 0: the default button
HWND g_autoPushDialog = nullptr;     // the dialog found, or the window whose popups are watched
DWORD g_autoPushStart = 0;           // GetTickCount of the beginning wait; wraps around after 49.7 days
HWND* g_autoPushBaseline = nullptr;  // dialogs of the thread that were there before; null: none

// The procedures of the two timers.
WFINFO_LEAVING_TIMER(WfinfoPushTick, WfinfoPushTickBody);
WFINFO_LEAVING_TIMER(WfinfoWatchTick, WfinfoWatchTickBody);

namespace {

constexpr UINT kSearchPeriodMs = 40;
constexpr UINT kWatchPeriodMs = 100;
constexpr UINT kHoldPeriodShortMs = 20;
constexpr UINT kHoldPeriodLongMs = 250;
constexpr std::uint32_t kLongDelayMs = 1000;     // from here on the long period does
constexpr std::uint32_t kLeastPatienceMs = 500;  // for a dialog to appear

constexpr DWORD kDefaultIdMark = DC_HASDEFID;  // high word of a valid answer to DM_GETDEFID
constexpr LONG_PTR kButtonTypeMask = 0xF;

bool StartTimer(UINT period, TIMERPROC tick) {
  g_autoPushTimer = SetTimer(nullptr, 0, period, tick);
  return g_autoPushTimer != 0;
}

// A timer that another thread stopped cannot be killed from there: it ends itself at its next tick.
bool IsStray(UINT_PTR timer) {
  if (timer == g_autoPushTimer && GetCurrentThreadId() == g_autoPushThread) return false;
  KillTimer(nullptr, timer);
  return true;
}

void DropBaseline() { LocalFree(std::exchange(g_autoPushBaseline, nullptr)); }

// After the press or the give-up.
void EndTimer() {
  KillAutoPushTimer();
  g_autoPushThread = 0;
}

std::uint32_t MillisecondsWaited() { return GetTickCount() - g_autoPushStart; }

bool StoodBefore(HWND dialog) {
  const HWND* before = g_autoPushBaseline;
  if (before == nullptr) return false;
  while (*before != nullptr && *before != dialog) ++before;
  return *before == dialog;
}

// The first of the listed dialogs that was not there before, or null.
HWND FirstNew(const HWND* dialogs) {
  while (*dialogs != nullptr && StoodBefore(*dialogs)) ++dialogs;
  return *dialogs;
}

// Id of the dialog's default button: as the dialog tells, else as its buttons look; 0 without one.
std::uint32_t DefaultButton(HWND dialog) {
  const auto answer = static_cast<DWORD>(SendMessageA(dialog, DM_GETDEFID, 0, 0));
  const int id = LOWORD(answer);
  if (HIWORD(answer) == kDefaultIdMark && GetDlgItem(dialog, id) != nullptr) return LOWORD(answer);
  HWND button = nullptr;
  while ((button = FindWindowExA(dialog, button, "Button", nullptr)) != nullptr) {
    if ((GetWindowLongPtrA(button, GWL_STYLE) & kButtonTypeMask) != BS_DEFPUSHBUTTON) continue;
    return static_cast<std::uint32_t>(GetDlgCtrlID(button));
  }
  return 0;
}

void Press(HWND dialog, std::uint32_t id, HWND button) {
  PostMessageA(dialog, WM_COMMAND, id, reinterpret_cast<LPARAM>(button));
}

void PressChosen(HWND dialog) {
  HWND button = GetDlgItem(dialog, static_cast<int>(g_autoPushButton));
  if (button == nullptr) {
    button = FindWindowExA(dialog, nullptr, "BUTTON", nullptr);
    if (button == nullptr) return;
    g_autoPushButton = static_cast<std::uint32_t>(GetDlgCtrlID(button));
  }
  Press(dialog, g_autoPushButton, button);
}

void Hold(HWND dialog) {
  g_autoPushDialog = dialog;
  g_autoPushStart = GetTickCount();
  KillAutoPushTimer();
  if (!StartTimer(g_autoPushDelay < kLongDelayMs ? kHoldPeriodShortMs : kHoldPeriodLongMs, &WfinfoPushTick))
    EndTimer();
  if (g_autoPushButton == 0) g_autoPushButton = DefaultButton(dialog);
}

void SearchDialog() {
  const UniqueLocal list(ListThreadDialogs());
  if (MillisecondsWaited() >= std::max(g_autoPushDelay, kLeastPatienceMs)) return EndTimer();
  const HWND dialog = list ? FirstNew(static_cast<const HWND*>(list.get())) : nullptr;
  if (dialog == nullptr) return;
  DropBaseline();
  Hold(dialog);
}

void HoldDialog() {
  const bool shows = IsWindow(g_autoPushDialog) != FALSE;
  if (shows && MillisecondsWaited() < g_autoPushDelay) return;
  if (shows) PressChosen(g_autoPushDialog);
  EndTimer();
}

void PressNextDialog() { g_autoPushDialog == nullptr ? SearchDialog() : HoldDialog(); }

void PressPopup() {
  const HWND window = g_autoPushDialog;
  // The rest of this tick runs all the same: it finds no popup.
  if (!IsWindow(window)) StopAutoPush();
  const HWND popup = GetLastActivePopup(window);
  if (popup == nullptr || popup == window) return;
  const std::uint32_t id = g_autoPushButton != 0 ? g_autoPushButton : DefaultButton(popup);
  const HWND button = id != 0 ? GetDlgItem(popup, static_cast<int>(id)) : nullptr;
  if (button != nullptr) Press(popup, id, button);
}

HMODULE Tick(UINT_PTR timer, void (*work)()) {
  if (IsStray(timer)) return ReferenceOfStray(timer);
  work();
  return nullptr;
}

}  // namespace

extern "C" [[gnu::used]] HMODULE CALLBACK WfinfoPushTickBody(HWND, UINT, UINT_PTR timer, DWORD) {
  return Tick(timer, &PressNextDialog);
}

extern "C" [[gnu::used]] HMODULE CALLBACK WfinfoWatchTickBody(HWND, UINT, UINT_PTR timer, DWORD) {
  return Tick(timer, &PressPopup);
}

bool PushNextDialog(std::uint32_t delay_ms, std::uint32_t button) {
  StopAutoPush();
  g_autoPushThread = GetCurrentThreadId();
  g_autoPushDelay = delay_ms;
  g_autoPushButton = button;
  g_autoPushDialog = nullptr;
  g_autoPushBaseline = ListThreadDialogs();
  g_autoPushStart = GetTickCount();
  return StartTimer(kSearchPeriodMs, &WfinfoPushTick);
}

bool PushEveryPopup(HWND window, std::uint32_t button) {
  StopAutoPush();
  g_autoPushThread = GetCurrentThreadId();
  g_autoPushDelay = 0;
  g_autoPushButton = button;
  g_autoPushDialog = window;
  return StartTimer(kWatchPeriodMs, &WfinfoWatchTick);
}

void StopAutoPush() {
  if (g_autoPushTimer != 0 && g_autoPushThread != GetCurrentThreadId()) {
    HoldForStray(g_autoPushThread, std::exchange(g_autoPushTimer, 0));
  }
  KillAutoPushTimer();
  DropBaseline();
  g_autoPushThread = 0;
}

void StopOwnAutoPush() {
  if (g_autoPushThread == GetCurrentThreadId()) StopAutoPush();
}

void ForgetTimersOfThread() {
  if (g_autoPushThread == GetCurrentThreadId()) {
    g_autoPushTimer = 0;
    g_autoPushThread = 0;
  }
  ReleaseStraysOfThread();
}

void KillAutoPushTimer() {
  if (g_autoPushTimer != 0) KillTimer(nullptr, std::exchange(g_autoPushTimer, 0));
}

}  // namespace wfinfo
