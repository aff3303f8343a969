// The line kernels in SSE2.
#include <bit>
#include <cstdint>
#include <cstring>

#include "src/message/line_scan_sets.h"
#include "src/text/ascii.h"
#include "src/text/host_text.h"
#include "src/text/simd.h"

namespace wfinfo {
namespace {

using Vec = simd::Sse2;

#include "src/message/line_ends_kernel.h"

}  // namespace

const LineKernels kSse2LineKernels = {"SSE2",     FindLineEnd,   CountEnds,  SkipLines,
                                      FindHeader, MeasureFolded, WriteFolded};

}  // namespace wfinfo
