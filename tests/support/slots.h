// What reaches a window of the host, told apart: a request with its block of slots, or a menu command.
#pragma once

#include <windows.h>

#include "src/bridge/host_protocol.h"

namespace wfinfo_test {

// One slot of an argument block.
using Slot = long long;

inline bool IsRequest(UINT message) { return message == wfinfo::kHostRequest; }

// A command of a menu: controls and accelerators tell of themselves in the other words.
inline bool IsMenuCommand(UINT message, WPARAM wparam, LPARAM lparam) {
  return message == WM_COMMAND && lparam == 0 && HIWORD(wparam) == 0;
}

}  // namespace wfinfo_test
