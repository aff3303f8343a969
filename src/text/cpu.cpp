#include "src/text/cpu.h"

#if defined(__x86_64__)
#include <cpuid.h>
#endif

namespace wfinfo {
namespace {

constexpr std::uint32_t kSystemSavesVectors = 1u << 27;  // of CpuWords::features

#if defined(__x86_64__)

// Asked by hand: the compiler's own test needs a constructor that runs at every load of the library.
CpuWords Ask() {
  CpuWords words;
  unsigned a = 0, b = 0, c = 0, d = 0;
  __get_cpuid(1, &a, &b, &words.features, &d);
  __get_cpuid_count(7, 0, &a, &words.extended, &c, &d);
  // The question which ones is an illegal instruction elsewhere.
  if ((words.features & kSystemSavesVectors) != 0) __asm__("xgetbv" : "=a"(words.saved), "=d"(d) : "c"(0));
  return words;
}

#else

CpuWords Ask() { return {}; }

#endif

bool HasAll(std::uint32_t bits, std::uint32_t wanted) { return (bits & wanted) == wanted; }

}  // namespace

bool AllowsAvx2(const CpuWords& words) {
  constexpr std::uint32_t kProduct = 1u << 1, kPopcnt = 1u << 23, kAvx = 1u << 28;
  constexpr std::uint32_t kFeatures = kProduct | kPopcnt | kSystemSavesVectors | kAvx;
  constexpr std::uint32_t kBmi1 = 1u << 3, kAvx2 = 1u << 5;
  constexpr std::uint32_t kXmm = 1u << 1, kYmm = 1u << 2;
  return HasAll(words.features, kFeatures) && HasAll(words.extended, kBmi1 | kAvx2) &&
         HasAll(words.saved, kXmm | kYmm);
}

bool AllowsAvx512(const CpuWords& words) {
  constexpr std::uint32_t kFoundation = 1u << 16, kBytes = 1u << 30;
  constexpr std::uint32_t kMasks = 1u << 5, kUpperHalves = 1u << 6, kUpperSixteen = 1u << 7;
  return AllowsAvx2(words) && HasAll(words.extended, kFoundation | kBytes) &&
         HasAll(words.saved, kMasks | kUpperHalves | kUpperSixteen);
}

constinit std::atomic<Vectors> g_vectors = Vectors::kNotAsked;

Vectors WidestOf(const CpuWords& words) {
  if (AllowsAvx512(words)) return Vectors::kAvx512;
  return AllowsAvx2(words) ? Vectors::kAvx2 : Vectors::kSse2;
}

Vectors AskForVectors() {
  const Vectors widest = WidestOf(Ask());
  g_vectors.store(widest, std::memory_order_relaxed);
  return widest;
}

}  // namespace wfinfo
