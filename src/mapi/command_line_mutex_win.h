// The lock under which one program at a time hands a command line to the host.
#pragma once

#include <windows.h>

#include "base/unique_win.h"

namespace wfinfo::mapi {

struct OwnedMutexTraits : PointerTraits<HANDLE, &CloseHandle> {
  static void Close(HANDLE mutex) {
    ReleaseMutex(mutex);
    CloseHandle(mutex);
  }
};
using OwnedMutex = Unique<OwnedMutexTraits>;

// The mutex, owned; empty when another program has held it for longer than this one waits (10.0 to 19.9
// seconds). Then the user has been told, by one box for all waiting programs.
OwnedMutex AcquireCommandLineMutex();

}  // namespace wfinfo::mapi
