// Looks over a macro before it runs.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "host/macro/syntax.h"

namespace wrenfold::macro {

// What is wrong with a call of `name` with so many parameters; nullopt when nothing is.
using CallCheck = std::optional<std::string> (*)(const std::string& name, std::size_t parameters);

// The first call, in the order of the source, that `check` finds wrong.
std::optional<Problem> CheckCalls(const Program& program, CallCheck check);

}  // namespace wrenfold::macro
