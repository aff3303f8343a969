// All sets of line kernels. In a file of its own, so that the library holds no set that it never runs.
#include "src/message/line_scan.h"
#include "src/message/line_scan_sets.h"
#include "src/text/cpu.h"

namespace wfinfo {
namespace {

// The plain words, and then one for each of Vectors.
constexpr const LineKernels* kSets[] = {&kPortableLineKernels, &kSse2LineKernels, &kAvx2LineKernels,
                                        &kAvx512LineKernels};

}  // namespace

std::span<const LineKernels* const> RunnableLineKernels() {
  return std::span(kSets).first(1 + static_cast<std::size_t>(WidestVectors()));
}

}  // namespace wfinfo
