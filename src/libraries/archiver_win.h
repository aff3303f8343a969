// Archiver libraries that follow the common convention: one entry point that takes a window, a command line,
// an output buffer and its size.
#pragma once

#include <windows.h>

#include "src/bridge/language_win.h"

namespace wfinfo {

// Bytes of an archiver's output buffer, terminator included.
inline constexpr DWORD kArchiverOutputSize = 10240;

// One family of archiver: what it is called, and its state in this process.
struct Archiver {
  const char* library;
  const char* entry_point;
  Message load_failure;
  Message missing_entry;

  HMODULE module = nullptr;  // null: not loaded
  char* output = nullptr;    // kArchiverOutputSize zeroed bytes, from the first call on
  int calls = 0;             // that the archiver is working on, one inside the other
};

extern Archiver g_lha;
extern Archiver g_zip;

// 1 when the archiver is loaded, already or now; 0, silently, when it cannot be.
int LoadArchiver(Archiver& archiver);

// Unloads the archiver and frees its output; while it is at work, as soon as that is done. Always 0.
int FreeArchiver(Archiver& archiver);

// Runs a command line, which goes to the archiver unchecked. The archiver's result, or -1 after a report when
// it could not be called. An archiver that was not loaded before is loaded for this call only, and its output
// is gone after it.
int RunArchiver(Archiver& archiver, HWND window, const char* command_line);

// The output of the last call, "" when there is none.
const char* ArchiverOutput(const Archiver& archiver);

}  // namespace wfinfo
