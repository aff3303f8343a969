// Macros that a macro hands to another window of the host.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/macro/value.h"

namespace wrenfold {

// Runs `macro` (host text): the file of that name when it ends in ".macro", else its own lines. Finds
// `parameters` in the variables p1, p2 and so on. Its value is that of its last statement, null when that has
// none; nothing when it could not be run to its end, which the user has been told.
using MacroRunner = std::function<std::optional<macro::Value>(std::string_view macro,
                                                              std::span<const macro::Value> parameters)>;

// The same of a file (UTF-8), whatever its name ends in.
using MacroFileRunner = std::function<std::optional<macro::Value>(const std::string& file)>;

}  // namespace wrenfold
