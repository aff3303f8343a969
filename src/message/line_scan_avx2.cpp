// The line kernels in AVX2, only reached through the table at the end, after HasAvx2() has been asked.
#include <bit>
#include <cstdint>
#include <cstring>

#include "src/message/line_scan_sets.h"
#include "src/text/ascii.h"
#include "src/text/host_text.h"
#include "src/text/simd.h"

WFINFO_BEGIN_AVX2

namespace wfinfo {
namespace {

using Vec = simd::Avx2;

#include "src/message/line_ends_kernel.h"

}  // namespace

const LineKernels kAvx2LineKernels = {"AVX2",     FindLineEnd,   CountEnds,  SkipLines,
                                      FindHeader, MeasureFolded, WriteFolded};

const LineKernels kAvx512LineKernels = {"AVX512",         FindLineEnd,   CountEndsAvx512, SkipLines,
                                        FindHeaderAvx512, MeasureFolded, WriteFolded};

}  // namespace wfinfo

WFINFO_END_AVX2
