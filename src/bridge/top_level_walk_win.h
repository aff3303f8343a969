// Walking the top-level windows in z-order while other programs open and close theirs.
#pragma once

#include <windows.h>

namespace wfinfo {

constexpr int kWalkAttempts = 100;
constexpr int kWalkSteps = 65536;  // more windows than a desktop can hold: the order changes under the walk

// Gives each top-level window to `visit`, from the front, until it returns true. A window that goes away just
// when its neighbour is asked for would end the walk early, as would the end: then everything begins again,
// after `restart`.
template <typename Visit, typename Restart>
void WalkTopLevelWindows(Visit visit, Restart restart) {
  for (int attempt = 0; attempt < kWalkAttempts; ++attempt) {
    if (attempt > 0) restart();
    HWND window = GetTopWindow(nullptr);
    for (int step = 0; window != nullptr && step < kWalkSteps; ++step) {
      if (visit(window)) return;
      const HWND next = GetWindow(window, GW_HWNDNEXT);
      if (next == nullptr && IsWindow(window)) return;
      window = next;
    }
  }
}

// For a `visit` that keeps nothing of the windows that it lets pass.
template <typename Visit>
void WalkTopLevelWindows(Visit visit) {
  WalkTopLevelWindows(visit, [] {});
}

}  // namespace wfinfo
