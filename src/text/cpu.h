// What the processor can do.
#pragma once

namespace wfinfo {

// True when AVX2 can be used, with the carry-less product and the bit counts that came before it. Asked of the processor
// once; after that a load and a comparison.
bool HasAvx2();

}  // namespace wfinfo
