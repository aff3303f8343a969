// Functions that macros of the small host have beside the library's exports: what a host does itself around
// some exports, and a macro cannot, since its texts hold no zero bytes.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/host_function.h"

namespace wrenfold {

// All of them.
std::vector<HostFunction> HostFunctions();

bool IsHostFunction(std::string_view name);

// Why a call with so many parameters cannot be made; nullopt for a fitting one.
std::optional<std::string> CheckHostFunction(std::string_view name, std::size_t parameters);

HostResult CallHostFunction(std::string_view name, HostCall& call);

}  // namespace wrenfold
