// A program's session with the host.
#pragma once

namespace wfinfo::mapi {

// Finds the host's frame, or starts the host, and writes its handle to `session` where that can be written.
// A flag has the host receive all mail. A code of read_mail_win.h.
unsigned LogOn(unsigned flags, void* session);

// Closes a host that LogOn started, unless its user is at work in it. Always kSuccess.
unsigned LogOff();

}  // namespace wfinfo::mapi
