// What the processor can do, and the choice among sets of routines that follows from it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace wfinfo {

enum class CpuAnswer : unsigned char { kNotAsked, kNo, kYes };
extern constinit std::atomic<CpuAnswer> g_avx2;

// What the processor and the system say of themselves; of what they do not say all bits are 0.
struct CpuWords {
  std::uint32_t features = 0;  // CPUID 1, ECX
  std::uint32_t extended = 0;  // CPUID 7, EBX
  std::uint32_t saved = 0;     // XCR0: the registers that the system keeps for each thread
};

// True when all that the routines in AVX2 use is there: the vectors, the carry-less product, POPCNT and BMI1,
// and a system that keeps the vectors.
bool AllowsAvx2(const CpuWords& words);

// Asks the processor and keeps the answer. Two threads may both ask: they hear the same.
bool AskForAvx2();

// AllowsAvx2 of this processor, which is asked once; after that a load and a comparison, since short texts
// come here too.
inline bool HasAvx2() {
  const CpuAnswer answer = g_avx2.load(std::memory_order_relaxed);
  return answer == CpuAnswer::kNotAsked ? AskForAvx2() : answer == CpuAnswer::kYes;
}

// Of sets of routines, slowest first and the last one in AVX2, those that this processor runs.
template <class Set, std::size_t kCount>
std::span<const Set> RunnableOf(const Set (&all)[kCount]) {
  return std::span(all).first(HasAvx2() ? kCount : kCount - 1);
}

}  // namespace wfinfo
