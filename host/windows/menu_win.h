// The menu of the small host's frame: the options of the mail being written, with their check marks.
#pragma once

#include <windows.h>

#include "host/requests/host_state.h"

namespace wrenfold {

// A menu bar for the frame, which destroys it; null on failure.
HMENU CreateHostMenu();

// Brings the check marks up to date. Without a mail being written the items are greyed.
void UpdateHostMenu(HMENU menu, HostState& state);

}  // namespace wrenfold
