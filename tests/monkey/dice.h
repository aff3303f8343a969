// Chance that can be repeated: each call of the monkey has dice of its own, made of the seed and the call's number,
// so any choice of calls can be run again without the others.
#pragma once

#include <cstddef>
#include <cstdint>

namespace monkey {

class Dice {
 public:
  Dice(std::uint64_t seed, std::uint64_t number) : state_(seed * 0x9E3779B97F4A7C15 + number) {}

  // SplitMix64.
  std::uint64_t Next() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return z ^ (z >> 31);
  }
  // 0 to count - 1.
  std::size_t Below(std::size_t count) { return static_cast<std::size_t>(Next() % count); }
  bool OneIn(std::size_t count) { return Below(count) == 0; }
  template <class Value, std::size_t kCount>
  const Value& Of(const Value (&values)[kCount]) {
    return values[Below(kCount)];
  }

 private:
  std::uint64_t state_;
};

}  // namespace monkey
