// The routines for comma-separated text in SSE2.
#include <algorithm>
#include <bit>
#include <cstring>

#include "src/csv/csv_bytes.h"
#include "src/csv/csv_kernels_sets.h"
#include "src/text/simd.h"

namespace wfinfo {
namespace {

using Vec = simd::Sse2;

#include "src/csv/csv_kernel.h"

}  // namespace

const CsvKernels kSse2CsvKernels = {"SSE2", CountLines, WidestLine, Line<true>, Lines, LineEnd};

}  // namespace wfinfo
