// Telling the user of a mail that did not reach the host. The calling program is told of a success: it would
// show a second error.
#pragma once

#include <windows.h>

namespace wfinfo::mapi {

// Shows a box; `error` is the system's code for what went wrong. Access that was denied is explained:
// programs cannot hand anything to a host of higher integrity.
void TellOfLostMail(DWORD error);

}  // namespace wfinfo::mapi
