// The memory of the HTML parser: bounded, so that no mail can use up the machine's.
#pragma once

#include <cstddef>

namespace wrenfold {

// Calls `work` with `data`. False when it was broken off because it asked for more than `limit` bytes; then
// all that it asked for is given back. `work` must allocate through the parser only and own nothing else:
// breaking off runs no destructors.
bool WithBoundedHtmlMemory(std::size_t limit, void (*work)(void* data), void* data);

}  // namespace wrenfold
