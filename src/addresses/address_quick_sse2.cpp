// The address kernels in SSE2.
#include <cstring>

#include "src/addresses/address_blanks.h"
#include "src/addresses/address_quick_sets.h"
#include "src/text/simd.h"

namespace wfinfo {
namespace {

using Vec = simd::Sse2;

#include "src/addresses/address_quick_kernel.h"

}  // namespace

const AddressKernels kSse2AddressKernels = {"SSE2", Scan, Count};

}  // namespace wfinfo
