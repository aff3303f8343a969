#include "src/message/line_scan.h"

#include <atomic>

#include "src/message/line_scan_sets.h"

#if defined(__x86_64__)
#include <cpuid.h>
#endif

namespace wfinfo {
namespace {

#if defined(__x86_64__)

// Asked by hand: the compiler's own test needs a constructor that runs at every load of the library.
bool HasAvx2() {
  unsigned a = 0, b = 0, c = 0, d = 0;
  constexpr unsigned kSystemSavesVectors = 1u << 27, kAvx = 1u << 28, kPopcnt = 1u << 23;
  constexpr unsigned kNeeded = kSystemSavesVectors | kAvx | kPopcnt;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0 || (c & kNeeded) != kNeeded) return false;
  unsigned saved = 0, high = 0;
  __asm__("xgetbv" : "=a"(saved), "=d"(high) : "c"(0));
  constexpr unsigned kXmmAndYmm = 6;
  if ((saved & kXmmAndYmm) != kXmmAndYmm) return false;
  constexpr unsigned kBmi1 = 1u << 3, kAvx2 = 1u << 5;
  return __get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 && (b & (kBmi1 | kAvx2)) == (kBmi1 | kAvx2);
}

constexpr const LineKernels* kAll[] = {&kAvx2LineKernels, &kSse2LineKernels, &kPortableLineKernels};
std::size_t Unsupported() { return HasAvx2() ? 0 : 1; }

#else

constexpr const LineKernels* kAll[] = {&kPortableLineKernels};
std::size_t Unsupported() { return 0; }

#endif

constinit std::atomic<const LineKernels*> g_chosen = nullptr;

}  // namespace

std::span<const LineKernels* const> AllLineKernels() { return std::span(kAll).subspan(Unsupported()); }

const LineKernels& Lines() {
  // Two threads may both choose: they choose the same.
  const LineKernels* chosen = g_chosen.load(std::memory_order_relaxed);
  if (chosen == nullptr) {
    chosen = AllLineKernels().front();
    g_chosen.store(chosen, std::memory_order_relaxed);
  }
  return *chosen;
}

}  // namespace wfinfo
