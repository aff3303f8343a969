#include "src/timers/stable_slots_win.h"

#include <windows.h>

#include <algorithm>

namespace wfinfo {
namespace {

// Slots from `slots`, which lie on this thread's stack, to the end of that stack; 1 when it cannot be told.
std::size_t SlotsOnStack(const Slot* slots) {
  MEMORY_BASIC_INFORMATION stack;
  if (VirtualQuery(slots, &stack, sizeof stack) == 0) return 1;
  const char* const end = static_cast<const char*>(stack.BaseAddress) + stack.RegionSize;
  return static_cast<std::size_t>(end - reinterpret_cast<const char*>(slots)) / sizeof(Slot);
}

}  // namespace

StableSlots::StableSlots(Slot* slots) : slots_(slots), count_(std::min(kLooked, SlotsOnStack(slots))) {
  for (std::size_t i = 0; i < count_; ++i) {
    given_[i] = slots[i];
    kept_[i] =
        i == 0 ? ToSlot(texts_.Keep(reinterpret_cast<const char*>(given_[i]))) : texts_.KeepValue(given_[i]);
    if (kept_[i] != given_[i]) slots[i] = kept_[i];
  }
}

StableSlots::~StableSlots() {
  for (std::size_t i = 0; i < count_; ++i) {
    // What the host wrote stays.
    if (kept_[i] != given_[i] && slots_[i] == kept_[i]) slots_[i] = given_[i];
  }
}

}  // namespace wfinfo
