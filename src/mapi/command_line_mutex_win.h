// The lock under which one program at a time hands a command line to the host.
#pragma once

#include <windows.h>

#include "src/base/unique_win.h"

namespace wfinfo::mapi {

struct OwnedMutexTraits : PointerTraits<HANDLE, &CloseHandle> {
  static void Close(HANDLE mutex) {
    ReleaseMutex(mutex);
    CloseHandle(mutex);
  }
};
using OwnedMutex = Unique<OwnedMutexTraits>;

// The mutex, owned. Empty when another program has held it for longer than this one waits (10.0 to 19.9
// seconds): then the user has been told, by one box for all waiting programs. Empty too, and told to the
// debug log only, when the system does not give it out, for instance while a program that runs as an
// administrator has it.
OwnedMutex AcquireCommandLineMutex();

}  // namespace wfinfo::mapi
