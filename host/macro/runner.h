// Macros that a macro hands to another window of the host.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string_view>

#include "host/macro/value.h"

namespace wrenfold {

// Runs `macro` (host text): the file of that name when it ends in ".macro", else its own lines. Finds
// `parameters` in the variables p1, p2 and so on. Its value is that of its last statement, 1 without one;
// nothing when it could not be run, which the user has been told.
using MacroRunner = std::function<std::optional<macro::Value>(std::string_view macro,
                                                              std::span<const macro::Value> parameters)>;

}  // namespace wrenfold
