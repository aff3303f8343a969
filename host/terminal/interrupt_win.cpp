#include "host/terminal/interrupt_win.h"

#include <windows.h>

#include <atomic>
#include <utility>

#include "host/terminal/failure_win.h"
#include "host/terminal/own_code_win.h"

namespace wrenfold {
namespace {

// The system gives a program about five seconds when its console is closed.
constexpr DWORD kMostMs = 4000;

// The system calls the handler on a thread of its own.
std::atomic<int> g_living{0};
std::atomic<bool> g_interrupted{false};
std::atomic<bool> g_ending{false};
std::atomic<bool> g_was_busy{false};
std::function<void()> g_last_words;  // only own code touches it

// Own code that is busy comes to its end or to a place where it waits; one that does not is left to
// itself once.
void End() {
  if (g_ending.exchange(true)) return;
  if (TakePlaceOfOwnCode(kMostMs)) {
    if (g_last_words) g_last_words();
  } else if (!g_was_busy.exchange(true)) {
    Complain("busy, and cannot keep the mail being written; Ctrl+C once more ends it all the same");
    g_ending = false;
    return;
  }
  // The main thread may hang in a call with locks that the library's end would wait for.
  TerminateProcess(GetCurrentProcess(), kInterrupted);
}

BOOL WINAPI OnControl(DWORD type) {
  const bool by_key = type == CTRL_C_EVENT || type == CTRL_BREAK_EVENT;
  if (by_key && g_living > 0 && !g_interrupted.exchange(true)) return TRUE;
  End();
  return TRUE;
}

}  // namespace

Interruptible::Interruptible() {
  if (g_living++ == 0) g_interrupted = false;
}

Interruptible::~Interruptible() {
  if (--g_living == 0) g_interrupted = false;
}

bool IsInterrupted() { return g_interrupted.load(std::memory_order_relaxed); }

// The handler stays: without it the system's own would end a program that is about to end by itself, with
// an exit code that says nothing of Ctrl+C.
LastWords::LastWords(std::function<void()> last_words) {
  g_last_words = std::move(last_words);
  [[maybe_unused]] static const BOOL kHandles = SetConsoleCtrlHandler(OnControl, TRUE);
}

LastWords::~LastWords() { g_last_words = nullptr; }

}  // namespace wrenfold
