// The host's windows seen as a user sees them: the main window, the search result window, and the
// ones beside.
#pragma once

#include <windows.h>

#include <optional>

namespace wfinfo {

// The window that acts for the calling thread, asked also while a dialog shows; null when there is none.
HWND ActingWindow();

// True when that is `window` or lies in it: a host may name a child window as its request target.
bool ActsInside(HWND window);

// The search result window as the host tells it, null when there is none; nothing while a dialog shows, since
// the host is not asked then: the look-up is the library's own, and no user wants to hear of its refusal.
std::optional<HWND> ToldGrepWindow();

// The main window: the first frame of this process that is not the search result window. Null when there is
// none, or when it cannot be told which of several frames it is.
HWND MainFrame();

// The first frame of this process in z-order other than `except`, or null.
HWND FirstOwnFrame(HWND except);

}  // namespace wfinfo
