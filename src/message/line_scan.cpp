#include "src/message/line_scan.h"

#include <atomic>

#include "src/message/line_scan_sets.h"
#include "src/text/cpu.h"

namespace wfinfo {
namespace {

#if defined(__x86_64__)

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
