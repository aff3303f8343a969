// The time that work takes, by the clock; under Wine processor time is too coarse.
#pragma once

#include <windows.h>

namespace wfinfo_bench {

inline double Now_ns() {
  LARGE_INTEGER now, frequency;
  QueryPerformanceCounter(&now);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(now.QuadPart) * 1e9 / static_cast<double>(frequency.QuadPart);
}

// Nanoseconds of the shortest of some rounds: other processes only ever add time.
template <class Work>
double Least_ns(Work work, int rounds = 7) {
  double least = 1e300;
  for (int round = 0; round < rounds; ++round) {
    const double start = Now_ns();
    work();
    const double ns = Now_ns() - start;
    if (ns < least) least = ns;
  }
  return least;
}

}  // namespace wfinfo_bench
