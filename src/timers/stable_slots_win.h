// Stable texts in a list of parameters whose length only the macro and the host know.
#pragma once

#include <cstddef>

#include "src/bridge/host_request_win.h"
#include "src/entry/stable_texts_win.h"

namespace wfinfo {

// For its lifetime the first of `slots`, a text, is a copy, and so is each of those behind it that holds the
// address of a live result. They are changed where they lie, since the host may read any number of them, and
// hold again what they held at the end: behind the parameters lies the caller's own stack.
class StableSlots {
 public:
  explicit StableSlots(Slot* slots);
  ~StableSlots();
  StableSlots(const StableSlots&) = delete;
  StableSlots& operator=(const StableSlots&) = delete;

  bool Failed() const { return texts_.Failed(); }

 private:
  static constexpr std::size_t kLooked = 16;  // macros pass a handful

  Slot* slots_;
  std::size_t count_;
  Slot given_[kLooked];
  Slot kept_[kLooked];
  StableTexts texts_;
};

}  // namespace wfinfo
