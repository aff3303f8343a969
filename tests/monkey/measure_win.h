// What a process holds of the system: what grows here while the same calls repeat is lost.
#pragma once

#include <windows.h>

#include <cstddef>

namespace monkey {

struct Holdings {
  long gdi;           // objects
  long user;          // objects: windows, menus, hooks, ...
  long handles;       // of the kernel
  long blocks;        // of memory that the library has taken, when it is watched: library_memory_win.h
  std::size_t bytes;  // private memory
};

// Exact but for `bytes`, which the system's heaps take in large pieces. Where the system does not tell how many
// there are, they are found by taking some: as long as nobody else makes any, the counts can be compared.
Holdings Measure();

}  // namespace monkey
