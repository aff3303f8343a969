// How this process was started.
#pragma once

#include <span>
#include <string>

#include "host/session/start_manner.h"

namespace wrenfold {

// `arguments` without the program's name.
StartManner OwnStartManner(std::span<const std::string> arguments);

}  // namespace wrenfold
