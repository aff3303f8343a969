// What is kept of the folders of one tree, in the text file folders.txt at its top (settings_text.h). A
// section is a folder's path in the tree:
//
//   [lists/users]
//   newmailto = users@lists.example.org
//   icon = 3
//
// "%" and the brackets of a folder's name are written as "%25", "%5B" and "%5D".
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/settings_text.h"

namespace wrenfold {

class FolderProperties {
 public:
  // The file of the tree at `root`, which may be missing.
  explicit FolderProperties(const std::filesystem::path& root);

  // Folders that have a section, in the order of the file.
  std::vector<std::string> Folders() const;
  // "" for what is not set.
  std::string Value(std::string_view folder, std::string_view key) const;

  // Both write the file, unless `in_memory`; why that is not possible, and then nothing changed.
  std::optional<std::string> Set(std::string_view folder, std::string_view key, std::string_view value,
                                 bool in_memory);
  std::optional<std::string> Remove(std::string_view folder, bool in_memory);

 private:
  // Makes a change to what the file holds, which others may have written since, and writes it.
  std::optional<std::string> Change(bool in_memory, const std::function<void(SettingsText&)>& change);

  std::filesystem::path file_;
  SettingsText settings_;
};

}  // namespace wrenfold
