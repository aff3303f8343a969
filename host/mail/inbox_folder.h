// Folders that stand for a mail server: .eml files dropped there are received, remote mails listed and deleted.
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
#include <variant>
#include <vector>

namespace wrenfold {

// The folder of an account (UTF-8) below the server's; nullopt for a name that no folder can have.
std::optional<std::filesystem::path> AccountFolder(const std::filesystem::path& server,
                                                   std::string_view account);

// Moves a mail into `folder`, which is made if need be, under a name that is free there. Gives its new path, or
// why it stays: it cannot be read, is empty, or cannot be moved.
std::variant<std::filesystem::path, std::string> TakeMail(const std::filesystem::path& file,
                                                          const std::filesystem::path& folder);

// Writes a copy of a mail's bytes into `folder`, as `name`. Returns why not, else nullopt.
std::optional<std::string> CopyMail(std::string_view raw, const std::filesystem::path& folder,
                                    const std::filesystem::path& name);

// Moves the mails of the server whose Message-ID is one of `ids` (with their brackets) to its folder "deleted".
// The number of those moved.
std::size_t DeleteOnServer(const std::filesystem::path& server, const std::vector<std::string>& ids);

}  // namespace wrenfold
