#include "host/folders/folder_names.h"

#include <algorithm>
#include <optional>
#include <system_error>

#include "host/base/paths.h"

namespace wrenfold {
namespace {

// Of each tree one folder is asked from: Find looks at no more of it.
bool IsFoundFromEverywhere(const FolderTree& tree, std::span<const MailFolder> folders,
                           const std::string& path, std::size_t folder) {
  std::optional<std::size_t> asked_in;
  for (std::size_t i = 0; i < folders.size(); ++i) {
    if (folders[i].removed || folders[i].tree == asked_in) continue;
    asked_in = folders[i].tree;
    if (tree.Find(path, i) != folder) return false;
  }
  return true;
}

}  // namespace

std::string CalledBy(const FolderTree& tree, std::span<const MailFolder> folders, std::size_t folder) {
  const std::string in_tree = tree.PathInTree(folder);
  for (const std::string& path : {in_tree == "." ? folders[folder].name : in_tree, in_tree}) {
    if (IsFoundFromEverywhere(tree, folders, path, folder)) return path;
  }
  std::error_code error;
  std::string full = PathToUtf8(std::filesystem::absolute(folders[folder].path, error).lexically_normal());
  std::replace(full.begin(), full.end(), '\\', '/');
  return full;
}

}  // namespace wrenfold
