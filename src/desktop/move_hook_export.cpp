// Exports that place the next window of the thread.
#include "src/catalogue/declarations.h"
#include "src/desktop/move_hook_win.h"

long long SetWindowMoveHook(int x, int y) noexcept {
  wfinfo::HookNextActivation(x, y);
  return 1;
}

long long ReleaseWindowMoveHook() noexcept {
  wfinfo::ReleaseMoveHook();
  return 1;
}
