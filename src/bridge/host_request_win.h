// Host requests: one synchronous private message to a window of the host, and the host's answer.
#pragma once

#include <windows.h>

#include <optional>

#include "src/base/slot.h"

namespace wfinfo {

// The dispatchers. `block` is the address of the first slot, or null for a code without arguments; the host
// may write to it. The result is the host's answer, 0 without a window or after a refusal; the text forms
// give "" for 0.
Slot SendHostRequest(int code, Slot* block = nullptr);
const char* SendHostRequestStr(int code, Slot* block = nullptr);
Slot SendViewRequest(int code, Slot* block = nullptr);
Slot SendFrameRequest(int code, Slot* block = nullptr);
const char* SendFrameRequestStr(int code, Slot* block = nullptr);

// As SendHostRequest, for what the library asks on its own account: while a dialog shows that refuses the
// code nothing is sent and the user is not told; the result is nothing then.
std::optional<Slot> SendHostRequestUnlessRefused(int code, Slot* block = nullptr);

// Runs a menu command of the frame and waits; refused while a modal dialog shows.
Slot SendHostCommand(int command);

// Has the frame start a menu command without waiting for its end (code 57).
Slot StartHostCommand(int command);

}  // namespace wfinfo
