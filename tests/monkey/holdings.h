// What a process holds of the system: what grows here while the same calls repeat is lost.
#pragma once

#include <cstddef>

namespace monkey {

struct Holdings {
  long gdi;           // objects
  long user;          // objects: windows, menus, hooks, ...
  long handles;       // of the kernel
  long blocks;        // of memory that the library has taken, when it is watched: library_memory_win.h
  std::size_t bytes;  // private memory
};

}  // namespace monkey
