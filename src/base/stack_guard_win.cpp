// The stack protector's two symbols. The compiler's own support library would import advapi32 only to draw a
// random number, and every program that loads us would pay for that.
#include "src/base/stack_guard_win.h"

#include <windows.h>

#include <cstdint>

extern "C" {
std::uintptr_t __stack_chk_guard = 0;

[[noreturn]] void __stack_chk_fail() {
  // An overwritten stack: end at once, without running any more code of this process.
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_STACK_BUFFER_OVERRUN));
  __builtin_trap();
}
}

namespace wfinfo {

__attribute__((no_stack_protector)) void ArmStackGuard() {
  LARGE_INTEGER counter;
  QueryPerformanceCounter(&counter);
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  std::uint64_t mixed = static_cast<std::uint64_t>(counter.QuadPart) ^
                        (std::uint64_t{now.dwLowDateTime} << 32) ^
                        reinterpret_cast<std::uintptr_t>(&counter) ^
                        (std::uint64_t{GetCurrentProcessId()} << 17) ^ GetCurrentThreadId();
  // Spread the few changing bits over the word (the finaliser of MurmurHash3, a published constant pair).
  mixed = (mixed ^ (mixed >> 33)) * 0xFF51AFD7ED558CCDULL;
  mixed = (mixed ^ (mixed >> 33)) * 0xC4CEB9FE1A85EC53ULL;
  // A zero byte at the low end stops text functions from reading or writing the guard.
  __stack_chk_guard = (mixed ^ (mixed >> 33)) & ~std::uintptr_t{0xFF};
}

}  // namespace wfinfo
