#include "host/base/plain_window_win.h"

namespace wrenfold {

HWND MakePlainWindow(const char* class_name, WNDPROC procedure, const char* title, DWORD style, HWND parent) {
  constexpr int kWidth = 320, kHeight = 200;
  WNDCLASSA window_class{};
  window_class.lpfnWndProc = procedure;
  window_class.hInstance = GetModuleHandleA(nullptr);
  window_class.lpszClassName = class_name;
  if (RegisterClassA(&window_class) == 0 && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) return nullptr;
  return CreateWindowExA(0, class_name, title, style, 0, 0, kWidth, kHeight, parent, nullptr,
                         window_class.hInstance, nullptr);
}

LRESULT AnswerOfClosable(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != WM_COMMAND || LOWORD(wparam) != IDCANCEL)
    return DefWindowProcA(window, message, wparam, lparam);
  DestroyWindow(window);
  return 0;
}

}  // namespace wrenfold
