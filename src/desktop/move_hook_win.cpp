#include "src/desktop/move_hook_win.h"

#include <windows.h>

#include <utility>

#include "src/bridge/module_win.h"

namespace wfinfo {
namespace {

HHOOK g_moveHook = nullptr;
int g_moveX = 0;
int g_moveY = 0;

LRESULT CALLBACK MoveActivated(int event, WPARAM wparam, LPARAM lparam) {
  const auto window = reinterpret_cast<HWND>(wparam);
  if (event != HCBT_ACTIVATE || (GetWindowLongPtrA(window, GWL_STYLE) & WS_CHILD) != 0) {
    return CallNextHookEx(g_moveHook, event, wparam, lparam);
  }
  SetWindowPos(window, nullptr, g_moveX, g_moveY, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  const LRESULT result = CallNextHookEx(g_moveHook, event, wparam, lparam);
  ReleaseMoveHook();
  return result;
}

}  // namespace

void HookNextActivation(int x, int y) {
  g_moveX = x;
  g_moveY = y;
  ReleaseMoveHook();
  g_moveHook = SetWindowsHookExA(WH_CBT, &MoveActivated, g_hInstance, GetCurrentThreadId());
}

void ReleaseMoveHook() {
  if (g_moveHook != nullptr) UnhookWindowsHookEx(std::exchange(g_moveHook, nullptr));
}

}  // namespace wfinfo
