// The folders of the mail store: finding them by what a macro calls them, making and deleting them, and what
// is kept of each in the folders.txt of its tree (folder_properties.h). Texts are UTF-8.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/folders/folder_properties.h"
#include "host/mail/mail_store.h"

namespace wrenfold {

class FolderTree {
 public:
  explicit FolderTree(MailStore& store) : store_(store) {}

  // Reads the folders.txt of trees that were added since, and adds the search folders that they name.
  void Load();

  // The folder of a full path, of a path in a tree ("lists/users", slashes either way) or of a name alone, in
  // any case of ASCII letters; those of the tree of folder `current` go first.
  std::optional<std::size_t> Find(std::string_view path, std::size_t current) const;

  // Where a folder lies in its tree: "lists/users", "." for the top.
  std::string PathInTree(std::size_t folder) const { return store_.PathInTree(folder); }

  // Properties by their key in folders.txt; "" for what is not set. SetProperty returns why it was not kept.
  std::string Property(std::size_t folder, std::string_view key) const;
  std::optional<std::string> SetProperty(std::size_t folder, std::string_view key, std::string_view value);

  // Makes a folder, with those above it that are missing: a full path within a tree, or one in the tree of
  // folder `current`. The folder's number, or why there is none.
  std::variant<std::size_t, std::string> Make(std::string_view path, std::size_t current);
  // The same for one that shows what `pack` finds in folder `searched` (nullopt: everywhere).
  std::variant<std::size_t, std::string> MakeSearch(std::string_view path, std::size_t current,
                                                    std::string_view pack,
                                                    std::optional<std::size_t> searched);

  // Why a folder is not to be deleted: the top of a tree, the trash, and what holds other files than mails.
  std::optional<std::string> WhyNotDelete(std::size_t folder) const;
  // The folder and those below it.
  std::vector<std::size_t> Branch(std::size_t folder) const;
  // Deletes the folder and those below it, which hold no mail any more. Why some are left, if they are.
  std::optional<std::string> Delete(std::size_t folder);

  // The folder of the tree that plays a part: that whose property "role" says so ("trash", "drafts", "sent"),
  // else that of this name at the top of the tree.
  std::optional<std::size_t> WithRole(std::size_t tree, std::string_view role) const;
  // The same, made at the top of the tree when it is missing.
  std::variant<std::size_t, std::string> MakeWithRole(std::size_t tree, std::string_view role);

 private:
  struct Place {
    std::size_t tree;
    std::string path;  // in the tree
  };
  std::variant<Place, std::string> PlaceOf(std::string_view path, std::size_t current) const;
  MailFolder FolderAt(const Place& place, FolderKind kind) const;

  MailStore& store_;
  std::vector<FolderProperties> properties_;  // by tree
};

}  // namespace wrenfold
