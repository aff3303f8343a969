// The sets of line kernels, one for each kind of vector unit; Lines() chooses.
#pragma once

#include "src/message/line_scan.h"

namespace wfinfo {

extern const LineKernels kPortableLineKernels;
extern const LineKernels kSse2LineKernels;
extern const LineKernels kAvx2LineKernels;
extern const LineKernels kAvx512LineKernels;  // those in AVX2 but for two

// Of that set: count_ends and find_header.
LineTally CountEndsAvx512(const char* text);
HeaderHit FindHeaderAvx512(const char* text, std::string_view prefix, std::size_t index);

}  // namespace wfinfo
