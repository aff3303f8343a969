#include "src/desktop/grep_window_win.h"

#include <windows.h>

#include "src/base/slot.h"
#include "src/catalogue/declarations.h"
#include "src/desktop/repetition.h"

namespace wfinfo {
namespace {

HWND GrepWindow() { return FromSlot<HWND>(GrepWnd()); }

// Asks the window to close as its Cancel button would; false when it is still there afterwards. What the host
// named may be no window: 65535 would press Cancel in every window of every program.
bool Close(HWND window) {
  if (IsWindow(window)) SendMessageA(window, WM_COMMAND, IDCANCEL, 0);
  return !IsWindow(window);
}

}  // namespace

bool CloseGrepWindows(bool all) {
  HWND window = GrepWindow();
  if (window == nullptr) return false;
  // A host that goes on naming windows which are gone has none left.
  Repetition repetition;
  do {
    if (!Close(window)) return false;
    if (repetition.Comes(window)) return true;
    window = all ? GrepWindow() : nullptr;
  } while (window != nullptr);
  return true;
}

}  // namespace wfinfo
