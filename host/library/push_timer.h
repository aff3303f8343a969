// What is known of the auto-push timer that a macro sets: for how long a box is left to it.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "host/macro/value.h"

namespace wrenfold {

class PushTimer {
 public:
  // A macro called an export of the library. Times are in milliseconds of one clock.
  void Called(std::string_view name, std::span<const macro::Value> parameters, const macro::Value& result,
              std::uint64_t now);

  // How long a box that shows at `now` may still be pressed by the timer; 0 when none is set.
  std::uint64_t PatienceAt(std::uint64_t now) const;

 private:
  bool is_set_ = false;
  std::uint64_t gives_up_ = 0;  // when no box came until then
  std::uint64_t delay_ = 0;     // from the box to the press
};

}  // namespace wrenfold
