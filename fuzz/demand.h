// What a fuzz target states: a property that has to hold for any input.
#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the process, and so the search, at the first property that does not hold.
inline void Demand(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  if (holds) return;
  std::fprintf(stderr, "%s:%d: this does not hold\n", file, line);
  std::abort();
}
