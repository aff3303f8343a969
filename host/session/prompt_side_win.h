// The prompt at the terminal, over the mails of the session.
#pragma once

#include "host/macro/check.h"
#include "host/macro/run.h"
#include "host/requests/host_state.h"

namespace wrenfold {

// Until "quit" or the end of the input. Returns the exit code: a person saw what went wrong, a script learns
// it from there.
int RunPrompt(macro::Interpreter& interpreter, const macro::KnownNames& known, HostState& state);

}  // namespace wrenfold
