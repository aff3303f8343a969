// What is wrong with an address list, in words for the user.
#pragma once

#include <cstddef>

#include "src/addresses/address_entry.h"
#include "src/bridge/language_win.h"

namespace wfinfo {

inline constexpr std::size_t kAddressErrorRoom = 256;  // for a diagnostic, terminator included

// Both texts are "" for kNone and kNoEntry.
Message MessageOf(AddressError error);

}  // namespace wfinfo
