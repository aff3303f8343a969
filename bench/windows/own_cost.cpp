// own_cost: nanoseconds of a host request that are the library's own. The calls into the system that a
// request is made of are replaced, in the library's own table of imports, by ones that answer at once; what a
// program spends on the same calls, one after the other, is taken off.
#include <windows.h>

#include <cstdio>
#include <cstring>

#include "bench/windows/report.h"
#include "bench/windows/stopwatch.h"
#include "tests/support/library_imports_win.h"

extern "C" {
#include "wfinfo.h"
}

namespace {

// Rounds shorter than a turn of another process, and many: the least of them is one that nothing interrupted.
constexpr int kCalls = 4'000;
constexpr int kRounds = 500;

const HWND g_frame = reinterpret_cast<HWND>(0x10010);

HWND WINAPI Active() { return g_frame; }
DWORD WINAPI OwnThread(HWND, DWORD* process) {
  if (process != nullptr) *process = GetCurrentProcessId();
  return GetCurrentThreadId();
}
int WINAPI FrameClass(HWND, char* name, int) {
  std::memcpy(name, "WrenfoldFrame", sizeof "WrenfoldFrame");
  return sizeof "WrenfoldFrame" - 1;
}
LRESULT WINAPI Answer(HWND, UINT message, WPARAM, LPARAM) {
  if (message == 21664) return reinterpret_cast<LRESULT>(g_frame);
  return message == 21701 ? 0 : 1;
}

void* Replacement(std::string_view name, void* original) {
  if (name == "GetActiveWindow") return reinterpret_cast<void*>(&Active);
  if (name == "GetWindowThreadProcessId") return reinterpret_cast<void*>(&OwnThread);
  if (name == "GetClassNameA") return reinterpret_cast<void*>(&FrameClass);
  if (name == "SendMessageA") return reinterpret_cast<void*>(&Answer);
  return original;
}

// The calls that a request demands and nothing else, through pointers as an import table has them.
template <class Function>
using Import = Function* volatile;
Import<decltype(Active)> g_active = &Active;
Import<decltype(OwnThread)> g_ownThread = &OwnThread;
Import<decltype(FrameClass)> g_frameClass = &FrameClass;
Import<decltype(Answer)> g_answer = &Answer;

long long BareCalls() {
  const HWND active = g_active();
  DWORD process = 0;
  if (g_ownThread(active, &process) != GetCurrentThreadId() || process != GetCurrentProcessId()) return 0;
  char name[32];
  g_frameClass(active, name, sizeof name);
  if (std::strcmp(name, "WrenfoldFrame") != 0) return 0;
  g_answer(active, 21701, 0, 0);
  const auto target = reinterpret_cast<HWND>(g_answer(active, 21664, 0, 0));
  return g_answer(target, 21623, 34, 0);
}

long long WithoutArguments() { return IsTransmitting(); }
long long WithANumber() { return SetMailColor(1); }

double Each_ns(long long (*call)()) {
  return wfinfo_bench::Least_ns(
             [call] {
               long long sum = 0;
               for (int i = 0; i < kCalls; ++i) sum += call();
               if (sum != kCalls) std::printf("unexpected answers\n");
             },
             kRounds) /
         kCalls;
}

}  // namespace

int main() {
  IsTransmitting();
  wfinfo_test::ForEachImportOfLibrary(&Replacement);
  const double bare = Each_ns(&BareCalls);
  wfinfo_bench::Report report;
  report.Time("Request/without_arguments", Each_ns(&WithoutArguments) - bare);
  report.Time("Request/with_a_number", Each_ns(&WithANumber) - bare);
  return 0;
}
