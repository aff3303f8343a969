// The files that a session works on: mails, accounts, templates and the address book.
#pragma once

#include <optional>
#include <string>

#include "host/requests/host_state.h"
#include "host/session/options.h"

namespace wrenfold {

// Opens what the options name; returns why that is not possible.
std::optional<std::string> OpenWorkFiles(const Options& options, HostState& state);

}  // namespace wrenfold
