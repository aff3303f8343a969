// The sets of line kernels, one for each kind of vector unit; Lines() chooses.
#pragma once

#include "src/message/line_scan.h"

namespace wfinfo {

extern const LineKernels kPortableLineKernels;
extern const LineKernels kSse2LineKernels;
extern const LineKernels kAvx2LineKernels;

}  // namespace wfinfo
