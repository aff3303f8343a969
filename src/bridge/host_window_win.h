// Finding the host's windows: where a request of the calling thread goes, and whether it may go now.
#pragma once

#include <windows.h>

namespace wfinfo {

enum class SearchMode {
  kFrameTarget,      // request target of this thread's frame, or an outer view or HTML viewer
  kOuterViewOnly,    // an outer view of this thread; a frame gives none
  kAnyThreadWindow,  // the first top-level window of this thread
};

// The window for a request `function_code`, or null: none there, or a modal dialog of the host is open and
// the code is not among those allowed then (the user has been told, once in a call of an export). With
// `want_popup` the window's last active popup is returned instead and nothing is refused.
HWND FindHostWindow(SearchMode mode, bool want_popup, unsigned function_code);

// The same search in mode kFrameTarget, telling nobody: `refused` is true when a dialog refuses the code.
struct HostSearch {
  HWND window;
  bool refused;
};
HostSearch SearchHostWindow(unsigned function_code);

// The frame that acts for the active window, after the modal test and the editor test; null after a refusal
// (reported) or without a frame. Used by the requests that concern the frame's list.
HWND FindActiveFrame(unsigned function_code);

// The first frame window of this process in z-order, else the first of any process, else null.
HWND FindAnyFrame();

// Null-terminated list of the calling thread's dialogs in z-order, or null when there are none. The caller
// frees it with LocalFree.
HWND* ListThreadDialogs();

// Owner for message boxes of this thread, or null.
HWND MessageBoxOwner();

// True when `window` is of class `name` exactly.
bool HasClass(HWND window, const char* name);

// Set while a deferred execution waits for another window's answer: the frame is not asked for its request
// target then, since it may be blocked in that wait.
extern int g_inExecAt;

}  // namespace wfinfo
