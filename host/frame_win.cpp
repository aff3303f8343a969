#include "frame_win.h"

#include "bridge/host_protocol.h"

namespace wrenfold {
namespace {

RequestServer* g_server = nullptr;  // while the windows live
HWND g_view = nullptr;

// Frame and outer view answer alike. No other window ever acts for one of ours.
LRESULT CALLBACK AnswerMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (g_server != nullptr) {
    if (message == wfinfo::kHostRequest) return g_server->Serve(static_cast<int>(wparam), lparam);
    if (message == wfinfo::kHostGetActiveView) return 0;
    if (message == wfinfo::kHostGetRequestTarget) return reinterpret_cast<LRESULT>(window);
    if (message == WM_COMMAND) return g_server->ServeCommand(LOWORD(wparam));
  }
  return DefWindowProcA(window, message, wparam, lparam);
}

HWND CreateHidden(const char* class_name) {
  WNDCLASSA window_class{};
  window_class.lpfnWndProc = AnswerMessage;
  window_class.hInstance = GetModuleHandleA(nullptr);
  window_class.lpszClassName = class_name;
  if (RegisterClassA(&window_class) == 0) return nullptr;
  return CreateWindowExA(0, class_name, "Wrenfold", WS_OVERLAPPEDWINDOW, 0, 0, 320, 200, nullptr, nullptr,
                         window_class.hInstance, nullptr);
}

}  // namespace

Windows::Windows(RequestServer& server) {
  g_server = &server;
  // The view's user data stays 0 as long as no mail is open in it, so that searches pass it by.
  g_view = view_ = CreateHidden(wfinfo::kOuterViewClass);
  frame_ = CreateHidden(wfinfo::kFrameClass);
}

Windows::~Windows() {
  if (frame_ != nullptr) DestroyWindow(frame_);
  if (view_ != nullptr) DestroyWindow(view_);
  g_server = nullptr;
  g_view = nullptr;
}

void Windows::OpenView() {
  SetWindowLongPtrA(g_view, GWLP_USERDATA, 1);
  SetWindowPos(g_view, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

bool Windows::Pump() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) return false;
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return true;
}

}  // namespace wrenfold
