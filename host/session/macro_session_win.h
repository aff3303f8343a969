// One run of macros on mails: macros and mails are read, the library loaded, the macros run; then the prompt.
#pragma once

#include "host/session/options.h"

namespace wrenfold {

// Returns the exit code. Everything that can be wrong with the input is found before the first macro runs.
int RunMacroSession(const Options& options);

}  // namespace wrenfold
