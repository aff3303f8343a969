// Keys pressed on a macro's behalf, as messages to a window or through the system's input queue; and the
// place of the next window of the thread.
#include <windows.h>

#include "src/catalogue/declarations.h"
#include "src/desktop/faked_modifiers_win.h"
#include "src/desktop/move_hook_win.h"

namespace {

constexpr UINT kFirstPress = 1;        // repeat count
constexpr UINT kRelease = 0xC0000001;  // repeat count 1; was down, goes up
constexpr int kScanCodeShift = 16;

}  // namespace

long long SimulateKeyStroke2(void* window, unsigned key, int shift, int control, int alt) noexcept {
  const wfinfo::FakedModifiers modifiers(shift != 0, control != 0, alt != 0);
  const auto target = static_cast<HWND>(window);
  const UINT scan_code = MapVirtualKeyA(key, MAPVK_VK_TO_VSC) << kScanCodeShift;
  // The context bit that goes with Alt (bit 29) stays 0, in WM_SYSKEYDOWN too.
  SendMessageA(target, alt != 0 ? WM_SYSKEYDOWN : WM_KEYDOWN, key, scan_code + kFirstPress);
  SendMessageA(target, alt != 0 ? WM_SYSKEYUP : WM_KEYUP, key, scan_code + kRelease);
  return 0;
}

long long SimulateKeyStroke(unsigned key, int shift, int control, int alt) noexcept {
  return SimulateKeyStroke2(GetFocus(), key, shift, control, alt);
}

long long Bypass_keybd_event(unsigned key) noexcept {
  const UINT scan_code = MapVirtualKeyA(key, MAPVK_VK_TO_VSC);
  keybd_event(static_cast<BYTE>(key), static_cast<BYTE>(scan_code), 0, 0);
  keybd_event(static_cast<BYTE>(key), static_cast<BYTE>(scan_code), KEYEVENTF_KEYUP, 0);
  return 0;
}

long long Bypass_keybd_event_raw(unsigned key, unsigned scan_code, unsigned flags, long long extra) noexcept {
  keybd_event(static_cast<BYTE>(key), static_cast<BYTE>(scan_code), flags, static_cast<ULONG_PTR>(extra));
  return 0;
}

long long SetWindowMoveHook(int x, int y) noexcept {
  wfinfo::HookNextActivation(x, y);
  return 1;
}

long long ReleaseWindowMoveHook() noexcept {
  wfinfo::ReleaseMoveHook();
  return 1;
}
