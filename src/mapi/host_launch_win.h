// Finding the host from any process, and starting it.
#pragma once

#include <windows.h>

namespace wfinfo::mapi {

// The frame of whatever host runs on this desktop, or null.
HWND FindHostFrame();

// True when the host shows a window of its own in front of `frame`: it waits for its user.
bool HasPopup(HWND frame);

// The host's frame; starts the host, hidden, when there is none and waits until it takes requests. Null when
// it does not start, or brings up no frame within 10 seconds, or 5 seconds after the last window that it
// showed (the user has been told then).
HWND ExecWrenfold();

}  // namespace wfinfo::mapi
