// The routines for comma-separated text in AVX2, only reached through the table at the end, after HasAvx2()
// has been asked.
#include <algorithm>
#include <bit>
#include <cstring>

#include "src/csv/csv_bytes.h"
#include "src/csv/csv_kernels_sets.h"
#include "src/text/simd.h"

WFINFO_BEGIN_AVX2

namespace wfinfo {
namespace {

using Vec = simd::Avx2;

#include "src/csv/csv_kernel.h"

}  // namespace

const CsvKernels kAvx2CsvKernels = {"AVX2", CountLines, WidestLine, Line<true>, Lines, LineEnd};

}  // namespace wfinfo

WFINFO_END_AVX2
