// Getting a file of comma-separated values into memory as one zero-terminated host text.
#pragma once

namespace wfinfo {

// The contents of the file `name` (host text), read by the host or, in a process without the host, by the
// library. A LocalAlloc block that the caller frees; null on failure.
char* LoadCsv(const char* name);

}  // namespace wfinfo
