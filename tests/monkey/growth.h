// Which holdings grow whenever the same calls are made again.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "tests/monkey/measure_win.h"

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

// What a run may hold more at its end than after its beginning: caches that fill, fragments.
inline bool HasGrown(const Holdings& before, const Holdings& after) {
  constexpr std::size_t kMostBytes = std::size_t{32} << 20;
  return after.gdi > before.gdi + 32 || after.user > before.user + 32 ||
         after.handles > before.handles + 32 || after.blocks > before.blocks + 32 ||
         after.bytes > before.bytes + kMostBytes;
}

}  // namespace monkey
