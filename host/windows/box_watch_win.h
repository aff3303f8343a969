// Message boxes and dialogs that the library, or the system for it, shows in the host's thread. They wait
// for a user, whom a host that runs by itself does not have.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "host/terminal/box_text.h"

namespace wrenfold {

// Looks at every dialog of this thread that is activated while the object lives, and tells of those that
// stay. With `press` it presses their default button; one that has none, or stays all the same, is closed
// as Esc would. A dialog of the library that waits for something else than its user (its only button
// cancels) is left alone, and told when it has stood for ten seconds. There is one object at a time.
class BoxWatch {
 public:
  struct Owner {
    std::function<void(const ShownBox& box, BoxFate fate)> tell;
    // Milliseconds for which a box that shows is left to a timer that presses it.
    std::function<std::uint64_t()> patience;
  };
  BoxWatch(bool press, HMODULE library, Owner owner);
  ~BoxWatch();
  BoxWatch(const BoxWatch&) = delete;
  BoxWatch& operator=(const BoxWatch&) = delete;

 private:
  struct Box {
    HWND window;      // null once it is destroyed
    ULONGLONG since;  // its activation
    ULONGLONG due;    // when it is told, and pressed
    bool told = false;
    ULONGLONG close_at = 0;  // 0: it is not to be closed
  };

  static LRESULT CALLBACK OnHook(int code, WPARAM window, LPARAM more);
  static void CALLBACK OnTick(HWND, UINT, UINT_PTR, DWORD);

  void Activated(HWND window);
  void Destroyed(HWND window);
  void Tick();
  // True when nothing is left to do for it.
  bool Serve(Box& box);
  bool IsWaitDialog(HWND box) const;

  bool press_;
  HMODULE library_;
  Owner owner_;
  HHOOK hook_;
  UINT_PTR timer_ = 0;
  std::vector<Box> boxes_;
};

}  // namespace wrenfold
