// The sets of csv_kernels.h, one for each kind of vector unit.
#pragma once

#include "src/csv/csv_kernels.h"

namespace wfinfo {

extern const CsvKernels kByteCsvKernels;
extern const CsvKernels kSse2CsvKernels;
extern const CsvKernels kAvx2CsvKernels;

}  // namespace wfinfo
