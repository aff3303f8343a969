// The host's windows seen as a user sees them: the main window, the search result window, and the ones
// beside.
#pragma once

#include <windows.h>

namespace wfinfo {

// The window that acts for the calling thread, asked also while a dialog shows; null when there is none.
HWND ActingWindow();

// The first frame of this process in z-order other than `except`, or null.
HWND FirstOwnFrame(HWND except);

}  // namespace wfinfo
