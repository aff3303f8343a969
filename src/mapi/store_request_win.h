// Asking the host's mail store: a block of shared memory goes to the host and comes back filled in.
#pragma once

#include <windows.h>

#include "src/mapi/hand_off_win.h"
#include "src/mapi/host_blocks.h"

namespace wfinfo::mapi {

// Passes `block`, whose fields the caller has filled in, to the host and waits for its answer; 1 when it has
// answered, else 0. While the host waits for its user, or takes longer than a second, a dialog owned by
// `parent` (may be null) lets the user give up.
int RequestHostMapiOperation(const SharedBlock& block, StoreRequest kind, HWND parent);

}  // namespace wfinfo::mapi
