// Changes to received mails, which are in memory until they are saved.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "host/requests/host_state.h"

namespace wrenfold {

// Tells once of each mail that changed headers are in memory only, unless it is being edited.
void TellHeaderChange(HostState& state, std::size_t mail);

// Writes a mail with its changes over the one in its file. Returns why that is not possible; then the file
// and the changes are as they were. With --read-only the mail changes in memory alone.
std::optional<std::string> SaveChanges(HostState& state, std::size_t mail);

// The file of a mail with its changes, which there must be.
std::string ChangedMail(HostState& state, std::size_t mail);

}  // namespace wrenfold
