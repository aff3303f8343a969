// What a user calls a folder.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "host/folders/folder_tree.h"

namespace wrenfold {

// What FolderTree::Find takes for the folder from everywhere, the shortest with slashes: "lists/users", of a
// top its name, else its full path. `folders` are those of the tree's store.
std::string CalledBy(const FolderTree& tree, std::span<const MailFolder> folders, std::size_t folder);

}  // namespace wrenfold
