// Folders named by a macro.
#pragma once

#include <optional>
#include <string>

#include "host/requests/request_server_win.h"

namespace wrenfold {

// The folder of a full path or of a name alone in a slot, in any case; without a text the current one.
std::optional<std::size_t> FolderOf(Request& request, std::size_t slot);

// The folder of a pair of slots: named by the first that is not empty, without both the current one.
std::optional<std::size_t> FolderOfPair(Request& request, std::size_t first_slot);

}  // namespace wrenfold
