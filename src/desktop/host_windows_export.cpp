// Exports that tell which host window is which, and show, hide and activate them.
#include <windows.h>

#include "src/bridge/host_protocol.h"
#include "src/bridge/host_window_win.h"
#include "src/catalogue/declarations.h"
#include "src/desktop/main_window_win.h"

using namespace wfinfo;

namespace {

int ShowMainWindow(int command) {
  const HWND window = MainFrame();
  if (window == nullptr) return 0;
  ShowWindow(window, command);
  return 1;
}

// The host's visible top-level windows: frames and used outer views of this process.
bool IsHostWindow(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != GetCurrentProcessId() || !IsWindowVisible(window)) return false;
  return HasClass(window, kFrameClass) ||
         (HasClass(window, kOuterViewClass) && GetWindowLongPtrA(window, GWLP_USERDATA) != 0);
}

// The nearest other host window from `start` in the given z-order direction, searched around the end.
HWND NeighbourOf(HWND start, UINT direction) {
  const UINT far_end = direction == GW_HWNDNEXT ? GW_HWNDFIRST : GW_HWNDLAST;
  for (HWND window = GetWindow(start, direction); window != nullptr; window = GetWindow(window, direction)) {
    if (IsHostWindow(window)) return window;
  }
  for (HWND window = GetWindow(start, far_end); window != nullptr && window != start;
       window = GetWindow(window, direction)) {
    if (IsHostWindow(window)) return window;
  }
  return nullptr;
}

int ActivateNeighbour(UINT direction) {
  HWND start = GetActiveWindow();
  if (start == nullptr || !IsHostWindow(start)) start = MainFrame();
  if (start == nullptr) return 0;
  const HWND neighbour = NeighbourOf(start, direction);
  if (neighbour == nullptr) return 0;
  if (IsIconic(neighbour)) ShowWindow(neighbour, SW_RESTORE);
  SetForegroundWindow(neighbour);
  return 1;
}

}  // namespace

int IsWrenfoldMain() noexcept {
  const HWND acting = ActingWindow();
  if (acting == nullptr) return 0;
  return HasClass(acting, kFrameClass) || HasClass(GetAncestor(acting, GA_ROOT), kFrameClass) ? 1 : 0;
}

int IsWrenfoldGrep() noexcept {
  const HWND search_results = ToldGrepWindow().value_or(nullptr);
  return search_results != nullptr && ActsInside(search_results) ? 1 : 0;
}

int IsTamarinMailGrep() noexcept { return IsWrenfoldGrep(); }

void* MainWnd() noexcept { return MainFrame(); }
void* MainWnd2() noexcept { return FirstOwnFrame(nullptr); }

int IsIcon() noexcept {
  const HWND window = MainFrame();
  return window != nullptr && IsIconic(window) ? 1 : 0;
}

int TrayIcon() noexcept {
  if (ShowMainWindow(SW_MINIMIZE) == 0) return 0;
  if (IsTrayIcon() != 0) ShowMainWindow(SW_HIDE);
  return 1;
}

int RestoreWindow() noexcept { return ShowMainWindow(SW_RESTORE); }
int MaximizeWindow() noexcept { return ShowMainWindow(SW_MAXIMIZE); }
int MinimizeWindow() noexcept { return ShowMainWindow(SW_MINIMIZE); }

int NextTamWren() noexcept { return ActivateNeighbour(GW_HWNDNEXT); }
int PrevTamWren() noexcept { return ActivateNeighbour(GW_HWNDPREV); }

void* SetWaitCursor() noexcept { return SetCursor(LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_WAIT))); }

void* RestoreWaitCursor(void* cursor) noexcept {
  const auto previous = static_cast<HCURSOR>(cursor);
  return SetCursor(previous != nullptr ? previous
                                       : LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW)));
}
