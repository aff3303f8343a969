// What the processor can do, and the choice among sets of routines that follows from it.
#pragma once

#include <atomic>
#include <cstddef>
#include <span>

namespace wfinfo {

enum class CpuAnswer : unsigned char { kNotAsked, kNo, kYes };
extern constinit std::atomic<CpuAnswer> g_avx2;

// Asks the processor and keeps the answer. Two threads may both ask: they hear the same.
bool AskForAvx2();

// True when AVX2 can be used, with the carry-less product and the bit counts that came before it. Asked of
// the processor once; after that a load and a comparison, since short texts come here too.
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
