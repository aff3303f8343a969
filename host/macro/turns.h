// When windows and timers have their turn while a macro runs.
#pragma once

#include <cstdint>

namespace wrenfold::macro {

// Asking the system for messages costs as much as a hundred statements. So it is asked behind each statement
// that called something, which may have posted one, and else at short times.
class Turns {
 public:
  static constexpr std::uint64_t kEveryMs = 10;

  void Called() { called_ = true; }

  // Asked before each statement with a clock that never goes back; true when messages are to be looked for.
  bool IsDue(std::uint64_t now_ms) {
    if (!called_ && now_ms - asked_ms_ < kEveryMs) return false;
    called_ = false;
    asked_ms_ = now_ms;
    return true;
  }

 private:
  bool called_ = true;  // the first statement
  std::uint64_t asked_ms_ = 0;
};

}  // namespace wrenfold::macro
