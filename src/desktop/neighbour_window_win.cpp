#include "src/desktop/neighbour_window_win.h"

#include "src/bridge/host_protocol.h"
#include "src/bridge/host_window_win.h"
#include "src/bridge/top_level_walk_win.h"
#include "src/desktop/main_window_win.h"

namespace wfinfo {
namespace {

// The host's visible top-level windows: frames and used outer views of this process.
bool IsShownHostWindow(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != GetCurrentProcessId() || !IsWindowVisible(window)) return false;
  return HasClass(window, kFrameClass) ||
         (HasClass(window, kOuterViewClass) && GetWindowLongPtrA(window, GWLP_USERDATA) != 0);
}

// The nearest other host window from `start` in the given z-order direction, searched around the end.
HWND NeighbourOf(HWND start, UINT direction) {
  HWND nearest[2] = {};  // before and behind `start`
  bool behind = false;
  const auto clear = [&] {
    nearest[0] = nearest[1] = nullptr;
    behind = false;
  };
  WalkTopLevelWindows(
      [&](HWND window) {
        if (window == start) {
          behind = true;
        } else if ((nearest[behind] == nullptr || direction == GW_HWNDPREV) && IsShownHostWindow(window)) {
          nearest[behind] = window;
        }
        return false;
      },
      clear);
  const bool preferred = direction == GW_HWNDNEXT;
  return nearest[preferred] != nullptr ? nearest[preferred] : nearest[!preferred];
}

}  // namespace

int ActivateNeighbour(UINT direction) {
  HWND start = GetActiveWindow();
  if (start == nullptr || !IsShownHostWindow(start)) start = MainFrame();
  if (start == nullptr) return 0;
  const HWND neighbour = NeighbourOf(start, direction);
  if (neighbour == nullptr) return 0;
  if (IsIconic(neighbour)) ShowWindow(neighbour, SW_RESTORE);
  SetForegroundWindow(neighbour);
  return 1;
}

}  // namespace wfinfo
