// A host's frame in the program itself: it answers each request at once, so what is timed is the way there.
#pragma once

#include <windows.h>

namespace wfinfo_bench {

using Answering = LRESULT (*)(WPARAM code);
inline Answering g_answering = nullptr;

inline LRESULT CALLBACK FrameProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == 21664) return reinterpret_cast<LRESULT>(window);
  if (message == 21701) return 0;
  if (message == 21623) return g_answering(wparam);
  return DefWindowProcA(window, message, wparam, lparam);
}

// Shows it, as the active window of this thread.
inline void ShowFrame(Answering answering) {
  g_answering = answering;
  WNDCLASSA frame{};
  frame.lpfnWndProc = &FrameProcedure;
  frame.lpszClassName = "WrenfoldFrame";
  RegisterClassA(&frame);
  SetActiveWindow(CreateWindowExA(0, "WrenfoldFrame", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 50, 50,
                                  nullptr, nullptr, nullptr, nullptr));
}

}  // namespace wfinfo_bench
