// Calls of Simple MAPI that the host has no answer to.
#pragma once

namespace wfinfo::mapi {

// Tells the user and reports success, so that the calling program goes on.
unsigned TellUnsupported(const char* name);

}  // namespace wfinfo::mapi
