// What the processor can do, and the choice among sets of routines that follows from it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace wfinfo {

// The widest vectors there are; each processor of 64 bits has SSE2.
enum class Vectors : unsigned char { kNotAsked, kSse2, kAvx2, kAvx512 };
extern constinit std::atomic<Vectors> g_vectors;

// What the processor and the system say of themselves; of what they do not say all bits are 0.
struct CpuWords {
  std::uint32_t features = 0;  // CPUID 1, ECX
  std::uint32_t extended = 0;  // CPUID 7, EBX
  std::uint32_t saved = 0;     // XCR0: the registers that the system keeps for each thread
};

// True when all that the routines in AVX2 use is there: the vectors, the carry-less product, POPCNT and BMI1,
// and a system that keeps the vectors.
bool AllowsAvx2(const CpuWords& words);

// True when AllowsAvx2 is and the routines in AVX-512 have theirs: its foundation, its operations on bytes,
// and a system that keeps the wide vectors and the masks.
bool AllowsAvx512(const CpuWords& words);

Vectors WidestOf(const CpuWords& words);

// Asks the processor and keeps the answer. Two threads may both ask: they hear the same.
Vectors AskForVectors();

// What this processor allows, which is asked once; after that a load and a comparison, since short texts come
// here too.
inline Vectors WidestVectors() {
  const Vectors widest = g_vectors.load(std::memory_order_relaxed);
  return widest == Vectors::kNotAsked ? AskForVectors() : widest;
}
inline bool HasAvx2() { return WidestVectors() >= Vectors::kAvx2; }
inline bool HasAvx512() { return WidestVectors() == Vectors::kAvx512; }

// Of sets of routines, slowest first and the last one in AVX2, those that this processor runs.
template <class Set, std::size_t kCount>
std::span<const Set> RunnableOf(const Set (&all)[kCount]) {
  return std::span(all).first(HasAvx2() ? kCount : kCount - 1);
}

}  // namespace wfinfo
