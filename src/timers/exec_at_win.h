// Deferred execution: a macro run in another window of the host.
#pragma once

#include <windows.h>

#include "src/bridge/host_request_win.h"

namespace wfinfo {

// Has `window`, a frame or outer view of any thread or process, run the macro of slots[0] with the slots
// behind it, and waits up to 20 seconds. Returns the window's answer, 0 after a report.
Slot ExecuteAt(HWND window, Slot* slots);

}  // namespace wfinfo
