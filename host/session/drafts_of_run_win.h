// The mails that macros write, at the beginning and the end of a run.
#pragma once

#include <optional>
#include <string>

#include "host/requests/host_state.h"
#include "host/session/options.h"

namespace wrenfold {

// Finds the folder of drafts; those of former runs are mails of a folder of their own. Once the mails are
// open. Returns why they cannot be read.
std::optional<std::string> OpenDrafts(const Options& options, HostState& state);

// Keeps the mail being written as a draft. False when that is not possible; then it was put elsewhere
// and shown on standard error, and without another place its whole file was.
bool KeepAtEnd(HostState& state);

}  // namespace wrenfold
