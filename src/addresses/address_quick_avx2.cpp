// The address kernels in AVX2, only reached through the table at the end, after HasAvx2() has been asked.
#include <cstring>

#include "src/addresses/address_blanks.h"
#include "src/addresses/address_quick_sets.h"
#include "src/text/simd.h"

WFINFO_BEGIN_AVX2

namespace wfinfo {
namespace {

using Vec = simd::Avx2;

#include "src/addresses/address_quick_kernel.h"

}  // namespace

const AddressKernels kAvx2AddressKernels = {"AVX2", Scan, Count};

}  // namespace wfinfo

WFINFO_END_AVX2
