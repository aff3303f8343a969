// HTTP requests of macros: at most one open request for each calling thread, kept in one table of
// the process.
#pragma once

#include "src/net/wininet_binding_win.h"

namespace wfinfo {

// What one thread has open.
struct InetSession {
  HINTERNET internet;  // kept for the thread's whole life
  HINTERNET request;   // null when none is open
  HLOCAL buffer;       // movable receive buffer, kept between reads
  char* data;          // its locked address
  DWORD thread_id;
};

// Opens `url` for the calling thread in place of what it had open. The request handle, -1 after a failure, 0
// when WinINet cannot be loaded.
long long OpenUrl(const char* url);

// Reads the whole remaining body into the calling thread's buffer. Its zero-terminated text, valid until the
// thread's next read, open or close; null after a report.
const char* ReadBody();

// One header value of the answer in the short-result buffer; null when there is none.
const char* QueryHttpInfo(DWORD info_level);

// WinINet's last response number of this thread, -1 when there is none.
long long LastResponseCode();

// Releases everything that the calling thread has open. Also called when a thread ends.
void CloseThreadSession();

}  // namespace wfinfo
