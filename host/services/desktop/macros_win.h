// Macros that services run.
#pragma once

#include <cstdint>
#include <optional>

#include "host/requests/host_state.h"

namespace wrenfold {

// Runs the user's macro before a mail is sent: its value, 1 when that is no number; nothing when it cannot
// be run.
std::optional<std::int64_t> RunBeforeSending(HostState& state);

}  // namespace wrenfold
