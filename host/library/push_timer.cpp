#include "host/library/push_timer.h"

#include <algorithm>
#include <limits>

namespace wrenfold {
namespace {

constexpr std::uint64_t kLeastWait = 500;  // milliseconds that the timer waits for a box at least
constexpr std::uint64_t kSlack = 1000;     // for its ticks on a machine that is busy

}  // namespace

void PushTimer::Called(std::string_view name, std::span<const macro::Value> parameters,
                       const macro::Value& result, std::uint64_t now) {
  if (name.starts_with("StopAutoPushTimer")) is_set_ = false;
  if (!name.starts_with("SetAutoPushTimer")) return;
  // A setting that is refused ends the one before it too.
  is_set_ = result.IsTrue();
  if (!is_set_ || parameters.empty()) return;
  const bool for_ever = name == "SetAutoPushTimerEver";
  const std::uint64_t unit = name == "SetAutoPushTimer" ? 1000 : 1;
  const auto given = static_cast<std::uint32_t>(parameters[0].Number() * static_cast<std::int64_t>(unit));
  delay_ = for_ever ? 0 : given;
  gives_up_ =
      for_ever ? std::numeric_limits<std::uint64_t>::max() : now + std::max(delay_, kLeastWait) + kSlack;
}

std::uint64_t PushTimer::PatienceAt(std::uint64_t now) const {
  return is_set_ && now <= gives_up_ ? delay_ + kSlack : 0;
}

}  // namespace wrenfold
