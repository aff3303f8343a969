// The line kernels in plain 64-bit words: what the vectors are compared with.
#include <bit>
#include <cstdint>
#include <cstring>

#include "src/message/line_scan_sets.h"
#include "src/text/ascii.h"
#include "src/text/host_text.h"
#include "src/text/simd.h"

namespace wfinfo {
namespace {

using Vec = simd::Words;

#include "src/message/line_ends_kernel.h"

}  // namespace

const LineKernels kPortableLineKernels = {"portable", FindLineEnd,   CountEnds,  SkipLines,
                                          FindHeader, MeasureFolded, WriteFolded};

}  // namespace wfinfo
