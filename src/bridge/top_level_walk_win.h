// Walking top-level windows in z-order while other programs open and close theirs.
#pragma once

#include <windows.h>

#include "src/bridge/host_protocol.h"

namespace wfinfo {

constexpr int kWalkAttempts = 100;
constexpr int kWalkSteps = 65536;  // more windows than a desktop can hold: the order changes under the walk

// Gives each window to `visit` until it returns true: first next(nullptr), then the next of each. A window
// that goes away just when its neighbour is asked for would end the walk early, as would the end: then
// everything begins again, after `restart`.
template <typename Next, typename Visit, typename Restart>
void WalkWindows(Next next, Visit visit, Restart restart) {
  for (int attempt = 0; attempt < kWalkAttempts; ++attempt) {
    if (attempt > 0) restart();
    HWND window = next(nullptr);
    for (int step = 0; window != nullptr && step < kWalkSteps; ++step) {
      if (visit(window)) return;
      const HWND neighbour = next(window);
      if (neighbour == nullptr && IsWindow(window)) return;
      window = neighbour;
    }
  }
}

// All top-level windows.
template <typename Visit, typename Restart>
void WalkTopLevelWindows(Visit visit, Restart restart) {
  WalkWindows(
      [](HWND window) { return window == nullptr ? GetTopWindow(nullptr) : GetWindow(window, GW_HWNDNEXT); },
      visit, restart);
}

// For a `visit` that keeps nothing of the windows that it lets pass.
template <typename Visit>
void WalkTopLevelWindows(Visit visit) {
  WalkTopLevelWindows(visit, [] {});
}

// All top-level windows in the z-order of one moment, until `visit` returns true. A walk passes a window over
// that another program's doings bring from behind it to its front; nothing hides one from this.
template <typename Visit>
void VisitTopLevelWindows(Visit visit) {
  EnumWindows(
      [](HWND window, LPARAM visitor) -> BOOL { return !(*reinterpret_cast<Visit*>(visitor))(window); },
      reinterpret_cast<LPARAM>(&visit));
}

// The frames of all hosts.
template <typename Visit, typename Restart>
void WalkFrames(Visit visit, Restart restart) {
  WalkWindows([](HWND frame) { return FindWindowExA(nullptr, frame, kFrameClass, nullptr); }, visit, restart);
}

}  // namespace wfinfo
