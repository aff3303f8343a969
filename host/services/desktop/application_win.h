// The settings that SaveConfig keeps.
#pragma once

#include <optional>
#include <string>

#include "host/requests/host_state.h"

namespace wrenfold {

// Reads commands.application.config_file, when it is there. Returns why it cannot be read.
std::optional<std::string> ReadConfig(HostState& state);

}  // namespace wrenfold
