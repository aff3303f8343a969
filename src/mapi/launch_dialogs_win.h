// The two dialogs that show while the host keeps a caller waiting. Both look after the host five times
// a second.
#pragma once

#include <windows.h>

namespace wfinfo::mapi {

// Shows dialog 101 until the host has closed its own dialogs: true. False when the user cancels or the
// host ends.
bool WaitUntilHostIsFree(HWND parent);

// Shows dialog 102 until `event` is signalled: true. False when the user gives up or the host ends. While the
// dialog is in front, a dialog of the host is brought before it: the host may be waiting for its user.
bool WaitUntilHostAnswers(HWND parent, HANDLE event);

}  // namespace wfinfo::mapi
