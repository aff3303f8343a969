// What a process holds of the system: what grows here while the same calls repeat is lost.
#pragma once

#include <windows.h>

#include <cstddef>

namespace monkey {

struct Holdings {
  unsigned gdi;           // objects; Wine 8 tells none
  unsigned user;          // objects: windows, menus, hooks, ...; Wine 8 tells none
  unsigned windows;       // of this thread
  unsigned long handles;  // place of the handle that the kernel gives next: it takes the lowest free ones
  std::size_t bytes;      // private memory
};

Holdings Measure();

}  // namespace monkey
