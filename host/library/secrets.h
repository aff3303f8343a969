// Parameters that nobody may read over somebody's shoulder, or later in a file: pass phrases and passwords.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "host/macro/value.h"

namespace wrenfold {

// The parameters of a call of an export, as messages and the trace may show them: "***" stands for each
// secret text, and for the password in an address of the web. An empty one is shown: it tells nothing, and is
// often what went wrong.
std::vector<macro::Value> WithoutSecrets(std::string_view name, std::span<const macro::Value> parameters);

}  // namespace wrenfold
