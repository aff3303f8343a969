// Macros that services run.
#pragma once

#include <optional>
#include <string>

#include "host/requests/host_state.h"

namespace wrenfold {

// Has the user's macro, if there is one, look at the mail being written. Returns why that must not be sent:
// only a number other than 0 lets it go, and only while it is the same mail that is being written.
std::optional<std::string> WhyHeldBack(HostState& state);

}  // namespace wrenfold
