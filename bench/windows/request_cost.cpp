// request_cost host|frame COUNT   sends COUNT requests, for a trace of the Windows server to be counted
// request_cost time               prints nanoseconds for a request and for the bare calls that it demands, and
//                                 for exports that are written by hand
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
#include "wfinfo.h"
}

namespace {

HWND g_frame;

LRESULT CALLBACK Frame(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == 21664) return reinterpret_cast<LRESULT>(window);
  if (message == 21701) return 0;
  if (message == 21623) return wparam == 1 ? reinterpret_cast<LRESULT>("Subject: a\r\n\r\n") : 1;
  return DefWindowProcA(window, message, wparam, lparam);
}

void MakeFrame() {
  WNDCLASSA frame{};
  frame.lpfnWndProc = &Frame;
  frame.lpszClassName = "WrenfoldFrame";
  RegisterClassA(&frame);
  g_frame = CreateWindowExA(0, "WrenfoldFrame", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 50, 50, nullptr,
                            nullptr, nullptr, nullptr);
  SetActiveWindow(g_frame);
}

// The calls that a request through the frame target demands, one after the other and nothing else.
long long BareHostRequest() {
  const HWND active = GetActiveWindow();
  DWORD process = 0;
  if (GetWindowThreadProcessId(active, &process) != GetCurrentThreadId() || process != GetCurrentProcessId())
    return 0;
  char name[32];
  GetClassNameA(active, name, sizeof name);
  if (std::strcmp(name, "WrenfoldFrame") != 0) return 0;
  SendMessageA(active, 21701, 0, 0);
  const auto target = reinterpret_cast<HWND>(SendMessageA(active, 21664, 0, 0));
  return SendMessageA(target, 21623, 34, 0);
}

template <class Function>
double NanosecondsEach(int count, Function function) {
  LARGE_INTEGER start, end, frequency;
  QueryPerformanceFrequency(&frequency);
  QueryPerformanceCounter(&start);
  long long sum = 0;
  for (int i = 0; i < count; ++i) sum += function();
  QueryPerformanceCounter(&end);
  if (sum != count) std::printf("unexpected answers\n");
  return static_cast<double>(end.QuadPart - start.QuadPart) * 1e9 / static_cast<double>(frequency.QuadPart) /
         count;
}

// No request, four parameters, no copies.
long long OwnWork() { return IfEqual("one", "one", 1, 0); }

// One request and one copy of a text.
long long WithCopy() { return CountRootHeader("Subject"); }

struct Timed {
  const char* what;
  long long (*call)();
  double least;
};

void Time() {
  constexpr int kCalls = 500;
  Timed timed[] = {{"the bare calls of a request", &BareHostRequest, 1e300},
                   {"a request", &IsTransmitting, 1e300},
                   {"a comparison in the library", &OwnWork, 1e300},
                   {"a request with a copied text", &WithCopy, 1e300}};
  // Interleaved, and the least of each: other processes only ever add time.
  for (int round = 0; round < 400; ++round) {
    for (Timed& one : timed) {
      const double time = NanosecondsEach(kCalls, one.call);
      one.least = time < one.least ? time : one.least;
    }
  }
  for (const Timed& one : timed) std::printf("%s: %.1f ns\n", one.what, one.least);
}

}  // namespace

int main(int argument_count, char** arguments) {
  MakeFrame();
  if (argument_count == 2 && std::strcmp(arguments[1], "time") == 0) {
    Time();
    return 0;
  }
  if (argument_count != 3) return 2;
  const bool host = std::strcmp(arguments[1], "host") == 0;
  for (int i = std::atoi(arguments[2]); i > 0; --i) {
    if ((host ? IsTransmitting() : MailCount()) != 1) return 1;
  }
  return 0;
}
