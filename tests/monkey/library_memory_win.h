// The blocks of memory that the library holds, counted exactly.
#pragma once

#include <cstddef>

namespace monkey {

// Stands between WFINFO.dll and the functions that give memory, for good. Before its first call.
void WatchLibraryMemory();

// Blocks of LocalAlloc and of the C library that it has taken and that were not given back.
std::size_t BlocksOfLibrary();

}  // namespace monkey
