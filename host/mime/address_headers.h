// Headers whose values are lists of addresses, which are encoded and decoded piece by piece.
#pragma once

#include <string_view>

namespace wrenfold {

// In any case, with or without blanks around the name.
bool IsAddressHeader(std::string_view name);

}  // namespace wrenfold
