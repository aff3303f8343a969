// Placing the next window that this thread activates.
#pragma once

namespace wfinfo {

// The next top-level window that the calling thread activates goes to (x, y), in screen coordinates. One such
// hook at a time: it ends after that window, or when it is set anew.
void HookNextActivation(int x, int y);

// Ends the hook if there is one; also for the detach of the process, where a hook left over would be called
// in memory that is no longer ours.
void ReleaseMoveHook();

}  // namespace wfinfo
