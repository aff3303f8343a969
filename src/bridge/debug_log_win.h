// Diagnostic lines: to the host's own log, or to "dump.txt" in its home directory when the user switched
// it on.
#pragma once

namespace wfinfo {

// The host's table of functions, handed over by GetWFInfoVersion; null until then.
extern const void* const* g_hostServices;

// Logs `text` with the number that tells where the line was written. Silent when nothing is to be logged.
void WriteDebugLog(const char* text, unsigned number);

}  // namespace wfinfo
