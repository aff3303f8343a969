// Ctrl+C (and Ctrl+Break): ends what a macro does, not the program; a second one ends the program.
#pragma once

#include <functional>

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

// While it lives, `last_words` have their turn before Ctrl+C, a closed console or the end of the user's
// session ends the program, with kInterrupted. They run on a thread of their own, in place of our own
// code (own_code_win.h), also while a call of the library hangs. One lives at a time, made and gone in
// own code; once it is gone Ctrl+C ends the program with the same code, without a word.
class LastWords {
 public:
  explicit LastWords(std::function<void()> last_words);
  ~LastWords();
  LastWords(const LastWords&) = delete;
  LastWords& operator=(const LastWords&) = delete;
};

}  // namespace wrenfold
