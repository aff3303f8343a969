#include "src/text/cpu.h"

#if defined(__x86_64__)
#include <cpuid.h>
#endif

namespace wfinfo {
namespace {

#if defined(__x86_64__)

// Asked by hand: the compiler's own test needs a constructor that runs at every load of the library.
bool Ask() {
  unsigned a = 0, b = 0, c = 0, d = 0;
  constexpr unsigned kProduct = 1u << 1, kPopcnt = 1u << 23, kSystemSavesVectors = 1u << 27, kAvx = 1u << 28;
  constexpr unsigned kNeeded = kProduct | kPopcnt | kSystemSavesVectors | kAvx;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0 || (c & kNeeded) != kNeeded) return false;
  unsigned saved = 0, high = 0;
  __asm__("xgetbv" : "=a"(saved), "=d"(high) : "c"(0));
  constexpr unsigned kXmmAndYmm = 6;
  if ((saved & kXmmAndYmm) != kXmmAndYmm) return false;
  constexpr unsigned kBmi1 = 1u << 3, kAvx2 = 1u << 5;
  return __get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 && (b & (kBmi1 | kAvx2)) == (kBmi1 | kAvx2);
}

#else

bool Ask() { return false; }

#endif

}  // namespace

constinit std::atomic<CpuAnswer> g_avx2 = CpuAnswer::kNotAsked;

bool AskForAvx2() {
  const bool has = Ask();
  g_avx2.store(has ? CpuAnswer::kYes : CpuAnswer::kNo, std::memory_order_relaxed);
  return has;
}

}  // namespace wfinfo
