#include "src/timers/stray_timers_win.h"

#include <atomic>

namespace wfinfo {
namespace {

// One timer is all that runs, and a stray one lives for a tick: more than a few at a time need a thread that
// handles no messages. What finds no place keeps the library for the life of the process.
constexpr int kMostStrays = 64;
constexpr DWORD kBeingFilled = ~DWORD{0};  // no thread has this number

struct Stray {
  std::atomic<DWORD> thread;  // 0: free. Only this thread frees the place again.
  UINT_PTR timer;
};
constinit Stray g_strays[kMostStrays]{};

// A reference to this library; null when the system gives none.
HMODULE HoldLibrary() {
  HMODULE library = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCSTR>(&g_strays), &library);
  return library;
}

HMODULE ThisLibrary() {
  HMODULE library = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCSTR>(&g_strays), &library);
  return library;
}

}  // namespace

void HoldForStray(DWORD thread, UINT_PTR timer) {
  if (HoldLibrary() == nullptr) return;
  for (Stray& stray : g_strays) {
    DWORD free = 0;
    if (!stray.thread.compare_exchange_strong(free, kBeingFilled)) continue;
    stray.timer = timer;
    stray.thread.store(thread, std::memory_order_release);
    return;
  }
}

HMODULE ReferenceOfStray(UINT_PTR timer) {
  const DWORD self = GetCurrentThreadId();
  for (Stray& stray : g_strays) {
    if (stray.thread.load(std::memory_order_acquire) != self || stray.timer != timer) continue;
    stray.thread.store(0, std::memory_order_release);
    return ThisLibrary();
  }
  return nullptr;
}

void ReleaseStraysOfThread() {
  const DWORD self = GetCurrentThreadId();
  for (Stray& stray : g_strays) {
    if (stray.thread.load(std::memory_order_acquire) != self) continue;
    stray.thread.store(0, std::memory_order_release);
    // Another thread gives the reference back: it waits for the loader's lock, which this one holds until it
    // has left the library.
    QueueUserWorkItem(reinterpret_cast<LPTHREAD_START_ROUTINE>(reinterpret_cast<void*>(&FreeLibrary)),
                      ThisLibrary(), WT_EXECUTEDEFAULT);
  }
}

}  // namespace wfinfo
