#include "host/terminal/interrupt_win.h"

#include <windows.h>

#include <atomic>

namespace wrenfold {
namespace {

// The system calls the handler on a thread of its own.
std::atomic<int> g_living{0};
std::atomic<bool> g_interrupted{false};

BOOL WINAPI OnControl(DWORD type) {
  if (type != CTRL_C_EVENT && type != CTRL_BREAK_EVENT) return FALSE;
  if (g_living == 0) return FALSE;
  return g_interrupted.exchange(true) ? FALSE : TRUE;
}

}  // namespace

Interruptible::Interruptible() {
  if (g_living++ > 0) return;
  g_interrupted = false;
  SetConsoleCtrlHandler(OnControl, TRUE);
}

Interruptible::~Interruptible() {
  if (--g_living > 0) return;
  SetConsoleCtrlHandler(OnControl, FALSE);
  g_interrupted = false;
}

bool IsInterrupted() { return g_interrupted.load(std::memory_order_relaxed); }

}  // namespace wrenfold
