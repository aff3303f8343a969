// Which holdings grow whenever the same calls are made again.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>

#include "tests/monkey/holdings.h"

namespace monkey {

struct Kind {
  const char* name;
  long Holdings::*count;
};
inline constexpr Kind kKinds[] = {{"handles", &Holdings::handles},
                                  {"GDI objects", &Holdings::gdi},
                                  {"USER objects", &Holdings::user},
                                  {"blocks of memory", &Holdings::blocks}};

// The kinds of which each measure shows more than the one before it: "6 handles", "3 GDI objects, 9 handles"; ""
// when there are none. A cache that fills, or what was left over before, makes one step and no more.
inline std::string SteadyGrowth(std::span<const Holdings> measures) {
  std::string grown;
  for (const Kind& kind : kKinds) {
    bool steady = measures.size() > 1;
    for (std::size_t i = 1; i < measures.size(); ++i)
      steady = steady && measures[i].*kind.count > measures[i - 1].*kind.count;
    if (!steady) continue;
    const long by = measures.back().*kind.count - measures.front().*kind.count;
    grown += (grown.empty() ? "" : ", ") + std::to_string(by) + " " + kind.name;
  }
  return grown;
}

// Whether a run holds more at its last measure than at its first, beyond caches that fill and fragments. Of GDI objects
// the greatest step is left out: the system keeps as many device contexts of windows as were ever in use at once, each
// with a region, and that number jumps on a busy machine.
inline bool HasGrown(std::span<const Holdings> measures) {
  constexpr long kMostOfAKind = 32;
  constexpr std::size_t kMostBytes = std::size_t{32} << 20;
  if (measures.empty()) return false;
  const Holdings& first = measures.front();
  const Holdings& last = measures.back();
  long greatest_step = 0;
  for (std::size_t i = 1; i < measures.size(); ++i)
    greatest_step = std::max(greatest_step, measures[i].gdi - measures[i - 1].gdi);
  return last.gdi > first.gdi + greatest_step + kMostOfAKind || last.user > first.user + kMostOfAKind ||
         last.handles > first.handles + kMostOfAKind || last.blocks > first.blocks + kMostOfAKind ||
         last.bytes > first.bytes + kMostBytes;
}

}  // namespace monkey
