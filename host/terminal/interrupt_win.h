// Ctrl+C (and Ctrl+Break): ends what a macro does, not the program.
#pragma once

namespace wrenfold {

// While one lives, the first Ctrl+C is kept for IsInterrupted; a second one ends the program, as it does when
// none lives. The last to go forgets it.
class Interruptible {
 public:
  Interruptible();
  ~Interruptible();
  Interruptible(const Interruptible&) = delete;
  Interruptible& operator=(const Interruptible&) = delete;
};

bool IsInterrupted();

}  // namespace wrenfold
