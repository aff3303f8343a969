// The sets of address_quick.h, one for each kind of vector unit.
#pragma once

#include "src/addresses/address_quick.h"

namespace wfinfo {

extern const AddressKernels kSse2AddressKernels;
extern const AddressKernels kAvx2AddressKernels;

}  // namespace wfinfo
