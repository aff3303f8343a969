// exec_target TITLE ANSWER: opens a host frame with this title that answers each deferred execution (code 45)
// with ANSWER, until it is closed or 60 seconds are over.
#include <windows.h>

#include <cstdlib>

#include "src/bridge/host_protocol.h"

namespace {

constexpr WPARAM kCodeExecute = 45;
constexpr UINT kLifetime = 60000;  // milliseconds

long long g_answer;

LRESULT CALLBACK Frame(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == wfinfo::kHostRequest) return wparam == kCodeExecute && lparam != 0 ? g_answer : -1;
  if (message == WM_TIMER || message == WM_CLOSE) PostQuitMessage(0);
  return DefWindowProcA(window, message, wparam, lparam);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  g_answer = std::atoll(arguments[2]);
  WNDCLASSA frame{};
  frame.lpfnWndProc = &Frame;
  frame.lpszClassName = wfinfo::kFrameClass;
  RegisterClassA(&frame);
  // Hidden: the tests of the caller keep their focus.
  const HWND window = CreateWindowExA(0, wfinfo::kFrameClass, arguments[1], WS_OVERLAPPEDWINDOW, 0, 0, 50, 50,
                                      nullptr, nullptr, nullptr, nullptr);
  SetTimer(window, 1, kLifetime, nullptr);
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
  return 0;
}
