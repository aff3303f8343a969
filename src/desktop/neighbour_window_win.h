// The host's windows in the order in which they lie on the desktop.
#pragma once

#include <windows.h>

namespace wfinfo {

// Activates the nearest other window of the host, GW_HWNDNEXT behind or GW_HWNDPREV before the active one
// (a frame or outer view that shows); searched around the end. 0 when there is none.
int ActivateNeighbour(UINT direction);

}  // namespace wfinfo
