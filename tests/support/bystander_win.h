// A window that nobody has named: what reaches it was sent to every window.
#pragma once

#include <windows.h>

#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {

class Bystander {
 public:
  explicit Bystander(ScriptedHost& host) {
    commands_ = 0;
    SetWindowLongPtrA(host.OpenWindow("STATIC"), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Count));
    SetActiveWindow(host.frame());
  }
  // Commands and private messages that came.
  int commands() const { return commands_; }

 private:
  static LRESULT CALLBACK Count(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_COMMAND || (message >= WM_USER && message < 0xC000)) ++commands_;
    return DefWindowProcA(window, message, wparam, lparam);
  }
  inline static int commands_ = 0;
};

}  // namespace wfinfo_test
