// Folders that stand for a mail server: .eml files dropped there are received, remote mails listed
// and deleted.
//
//   inbox/a.eml            for the first account
//   inbox/example/b.eml    for the account "example"
//   inbox/deleted/c.eml    deleted on the server; never received
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

// The folder of an account (UTF-8) below the server's; nullopt for a name that no folder can have.
std::optional<std::filesystem::path> AccountFolder(const std::filesystem::path& server,
                                                   std::string_view account);

// Moves the mails of the server whose Message-ID is one of `ids` (with their brackets) to its folder
// "deleted". The number of those moved.
std::size_t DeleteOnServer(const std::filesystem::path& server, const std::vector<std::string>& ids);

}  // namespace wrenfold
