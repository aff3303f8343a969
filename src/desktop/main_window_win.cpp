#include "desktop/main_window_win.h"

#include "bridge/host_protocol.h"
#include "bridge/host_window_win.h"

namespace wfinfo {

HWND ActingWindow() {
  return FindHostWindow(SearchMode::kFrameTarget, false, static_cast<unsigned>(kCodeMainWindowTest));
}

HWND FirstOwnFrame(HWND except) {
  for (HWND frame = nullptr; (frame = FindWindowExA(nullptr, frame, kFrameClass, nullptr)) != nullptr;) {
    DWORD process = 0;
    GetWindowThreadProcessId(frame, &process);
    if (process == GetCurrentProcessId() && frame != except) return frame;
  }
  return nullptr;
}

}  // namespace wfinfo
