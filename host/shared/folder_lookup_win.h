// Folders named by a macro.
#pragma once

#include <optional>
#include <string>

#include "host/requests/request_server_win.h"

namespace wrenfold {

// The folder of a full path, of a path in its tree or of a name alone in a slot, in any case; without a text
// the current one. Nothing, and the reason in HostState::failure, when there is no such folder.
std::optional<std::size_t> FolderOf(Request& request, std::size_t slot);

// The folder of a pair of slots: named by the first that is not empty, without both the current one.
std::optional<std::size_t> FolderOfPair(Request& request, std::size_t first_slot);

// What a pair of slots names, as UTF-8: the first text that is not empty, or "".
std::string NameOfPair(Request& request, std::size_t first_slot);

// A folder's full path as host text.
std::string FolderPath(Request& request, std::size_t folder);

// 0, for the reason that a lookup left behind.
Answer NoFolder(Request& request);

using FolderHandler = Answer (*)(Request& request, std::size_t folder);

// Runs `kAnswer` for the folder that a pair of slots names; else the answer is 0.
template <FolderHandler kAnswer, std::size_t kFirstSlot = 0>
Answer WithFolder(Request& request) {
  const auto folder = FolderOfPair(request, kFirstSlot);
  return folder ? kAnswer(request, *folder) : NoFolder(request);
}

}  // namespace wrenfold
