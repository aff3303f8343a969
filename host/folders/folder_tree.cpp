#include "host/folders/folder_tree.h"

#include <algorithm>
#include <set>
#include <system_error>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/files/file_names.h"
#include "host/files/file_reasons.h"
#include "host/files/links.h"
#include "host/mail/marks_file.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kTrash = "trash";

std::string WithSlashes(std::string_view path) {
  std::string slashed(path);
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  while (slashed.size() > 1 && slashed.ends_with('/')) slashed.pop_back();
  return slashed;
}

std::string FullPath(const fs::path& path) {
  std::error_code error;
  return WithSlashes(PathToUtf8(fs::absolute(path, error).lexically_normal()));
}

// Names of files that the host keeps beside mails, and what it writes beside a file.
bool IsOwnFile(std::string_view name) {
  return IsMarksFile(name) || EqualsIgnoringCase(name, "folders.txt") ||
         EqualsIgnoringCase(name, "filters.txt") || Lower(name).ends_with(".new");
}

// Why a part of a path cannot be a folder's name as it stands, if so.
std::optional<std::string> WhyNoName(std::string_view name) {
  const std::u16string part = Utf8ToWide(name);
  if (part.empty()) return "a part of it is empty";
  // Folders whose name begins with a period are not read.
  if (part[0] == u'.') return "a part of it begins with a period";
  if (IsOwnFile(name)) return "files of the host are called so";
  if (part.size() > kLongestFileName)
    return "a name has " + std::to_string(kLongestFileName) + " characters at most";
  if (CleanFileName(part) != part) return "Windows takes no such name";
  return std::nullopt;
}

// The same of each part of a path in a tree.
std::optional<std::string> WhyNoPath(std::string_view path) {
  while (true) {
    const std::size_t slash = path.find('/');
    if (auto reason = WhyNoName(path.substr(0, slash))) return reason;
    if (slash == path.npos) return std::nullopt;
    path.remove_prefix(slash + 1);
  }
}

bool CanBePath(std::string_view path) { return !WhyNoPath(path); }

// In any case, as the system takes them.
bool IsBelow(std::string_view path, std::string_view folder) {
  return folder == "." || (path.size() > folder.size() && path[folder.size()] == '/' &&
                           EqualsIgnoringCase(path.substr(0, folder.size()), folder));
}

}  // namespace

void FolderTree::Load() {
  while (properties_.size() < store_.trees().size()) {
    const std::size_t tree = properties_.size();
    properties_.emplace_back(store_.trees()[tree].root);
    for (const std::string& folder : properties_[tree].Folders()) {
      if (properties_[tree].Value(folder, "findpack").empty() || !CanBePath(folder)) continue;
      store_.AddFolder(FolderAt({tree, folder}, FolderKind::kSearch));
    }
  }
}

std::optional<std::size_t> FolderTree::Find(std::string_view path, std::size_t current) const {
  const std::string wanted = WithSlashes(path);
  const std::vector<MailFolder>& folders = store_.folders();
  const auto first = [&](auto names) -> std::optional<std::size_t> {
    // The tree at hand, then all.
    for (const bool here : {true, false}) {
      for (std::size_t i = 0; i < folders.size(); ++i) {
        if (folders[i].removed || (here && folders[i].tree != folders[current].tree)) continue;
        if (EqualsIgnoringCase(names(i), wanted)) return i;
      }
    }
    return std::nullopt;
  };
  if (folders.empty() || wanted.empty()) return std::nullopt;
  if (const auto found = first([&](std::size_t i) { return FullPath(folders[i].path); })) return found;
  if (const auto found = first([&](std::size_t i) { return store_.PathInTree(i); })) return found;
  return first([&](std::size_t i) { return folders[i].name; });
}

// --- Properties ---

std::string FolderTree::Property(std::size_t folder, std::string_view key) const {
  const std::size_t tree = store_.folders()[folder].tree;
  return tree < properties_.size() ? properties_[tree].Value(store_.PathInTree(folder), key) : "";
}

std::optional<std::string> FolderTree::SetProperty(std::size_t folder, std::string_view key,
                                                   std::string_view value) {
  Load();
  return properties_[store_.folders()[folder].tree].Set(store_.PathInTree(folder), key, value,
                                                        store_.read_only());
}

// --- Making ---

std::variant<FolderTree::Place, std::string> FolderTree::PlaceOf(std::string_view path,
                                                                 std::size_t current) const {
  const std::string wanted = WithSlashes(path);
  Place place{store_.folders()[current].tree, wanted};
  for (std::size_t tree = 0; tree < store_.trees().size(); ++tree) {
    const std::string root = FullPath(store_.trees()[tree].root);
    const bool within = wanted.size() > root.size() + 1 && wanted[root.size()] == '/' &&
                        EqualsIgnoringCase(std::string_view(wanted).substr(0, root.size()), root);
    if (within) place = {tree, wanted.substr(root.size() + 1)};
  }
  std::optional<std::string> reason = WhyNoPath(place.path);
  if (!reason && !store_.LooksAt(place.tree, place.path))
    reason = "it would not be read: it lies too deep, behind a link, or where mails wait";
  if (reason) return "no folder can be called \"" + std::string(path) + "\": " + *reason;
  return place;
}

MailFolder FolderTree::FolderAt(const Place& place, FolderKind kind) const {
  const fs::path path = (store_.trees()[place.tree].root / PathFromUtf8(place.path)).lexically_normal();
  return {PathToUtf8(path.filename()), path, kind, place.tree};
}

std::variant<std::size_t, std::string> FolderTree::Make(std::string_view path, std::size_t current) {
  auto found = PlaceOf(path, current);
  if (auto* wrong = std::get_if<std::string>(&found)) return std::move(*wrong);
  const Place place = std::get<Place>(std::move(found));
  const MailFolder folder = FolderAt(place, FolderKind::kFolder);
  std::error_code error;
  if (fs::exists(folder.path, error) && !fs::is_directory(folder.path, error))
    return "there is a file " + PathToUtf8(folder.path);
  if (!store_.read_only()) fs::create_directories(folder.path, error);
  if (error) return "cannot make the folder " + PathToUtf8(folder.path) + ": " + ReasonOf(error);
  // Those above it are folders of the host too.
  for (std::size_t slash = place.path.find('/'); slash != std::string::npos;
       slash = place.path.find('/', slash + 1))
    store_.AddFolder(FolderAt({place.tree, place.path.substr(0, slash)}, FolderKind::kFolder));
  return store_.AddFolder(folder);
}

std::variant<std::size_t, std::string> FolderTree::MakeSearch(std::string_view path, std::size_t current,
                                                              std::string_view pack,
                                                              std::optional<std::size_t> searched) {
  auto found = PlaceOf(path, current);
  if (auto* wrong = std::get_if<std::string>(&found)) return std::move(*wrong);
  const auto [tree, in_tree] = std::get<Place>(std::move(found));
  Load();
  // A path in the tree stays right when the tree goes elsewhere.
  const bool same_tree = searched && store_.folders()[*searched].tree == tree;
  const std::string where = !searched   ? ""
                            : same_tree ? store_.PathInTree(*searched)
                                        : FullPath(store_.folders()[*searched].path);
  for (const auto& [key, value] : {std::pair<std::string_view, std::string_view>{"findfolder", where},
                                   std::pair<std::string_view, std::string_view>{"findpack", pack}}) {
    if (auto failure = properties_[tree].Set(in_tree, key, value, store_.read_only()))
      return *std::move(failure);
  }
  return store_.AddFolder(FolderAt({tree, in_tree}, FolderKind::kSearch));
}

// --- Deleting ---

std::vector<std::size_t> FolderTree::Branch(std::size_t folder) const {
  const std::string top = store_.PathInTree(folder);
  std::vector<std::size_t> branch;
  for (std::size_t i = 0; i < store_.folders().size(); ++i) {
    const MailFolder& other = store_.folders()[i];
    if (other.removed || other.tree != store_.folders()[folder].tree) continue;
    const std::string path = store_.PathInTree(i);
    if (EqualsIgnoringCase(path, top) || IsBelow(path, top)) branch.push_back(i);
  }
  return branch;
}

std::optional<std::string> FolderTree::WhyNotDelete(std::size_t folder) const {
  const MailFolder& found = store_.folders()[folder];
  if (store_.PathInTree(folder) == ".") return found.name + " is the top of its tree";
  const auto trash = WithRole(found.tree, kTrash);
  const std::vector<std::size_t> branch = Branch(folder);
  if (trash && std::find(branch.begin(), branch.end(), *trash) != branch.end())
    return found.name + " holds the trash";
  if (found.kind != FolderKind::kFolder) return std::nullopt;
  const auto key = [](const fs::path& path) { return Lower(PathToUtf8(path.lexically_normal())); };
  std::set<std::string> known;
  for (const StoredMail& mail : store_.mails()) {
    if (mail.place != MailPlace::kMemory) known.insert(key(mail.source));
  }
  for (const std::size_t i : branch) known.insert(key(store_.folders()[i].path));
  std::error_code error;
  for (fs::recursive_directory_iterator entry(found.path, error), end; !error && entry != end;
       entry.increment(error)) {
    if (IsLink(entry->path())) return found.name + " holds a link: " + PathToUtf8(entry->path().filename());
    if (entry->is_directory(error) || known.contains(key(entry->path()))) continue;
    if (IsMarksFile(PathToUtf8(entry->path().filename()))) continue;
    return found.name + " holds another file: " + PathToUtf8(entry->path().filename());
  }
  return std::nullopt;
}

std::optional<std::string> FolderTree::Delete(std::size_t folder) {
  std::vector<std::size_t> branch = Branch(folder);
  // The deepest first: their paths are longer than those above them.
  std::sort(branch.begin(), branch.end(), [this](std::size_t a, std::size_t b) {
    return store_.PathInTree(a).size() > store_.PathInTree(b).size();
  });
  for (const std::size_t i : branch) {
    const MailFolder& found = store_.folders()[i];
    std::error_code error;
    const bool on_disk = found.kind != FolderKind::kSearch && !store_.read_only();
    // An mbox that still holds something is kept; the system keeps folders that do.
    const bool empty = found.kind != FolderKind::kMbox || fs::file_size(found.path, error) == 0;
    // What is kept of mails that are gone keeps no folder.
    if (on_disk && found.kind == FolderKind::kFolder) fs::remove(found.path / kMarksFile, error);
    error.clear();
    if (on_disk && (!empty || !fs::remove(found.path, error)) && fs::exists(found.path))
      return "cannot delete " + PathToUtf8(found.path) + (error ? ": " + ReasonOf(error) : "");
    if (auto failure = properties_[found.tree].Remove(store_.PathInTree(i), store_.read_only()))
      return failure;
    store_.RemoveFolder(i);
  }
  return std::nullopt;
}

// --- Roles ---

std::optional<std::size_t> FolderTree::WithRole(std::size_t tree, std::string_view role) const {
  std::optional<std::size_t> by_name;
  for (std::size_t i = 0; i < store_.folders().size(); ++i) {
    const MailFolder& folder = store_.folders()[i];
    if (folder.removed || folder.tree != tree || folder.kind == FolderKind::kSearch) continue;
    // Mails that lie in the trash are deleted for good: the top, where all lie, is none.
    const bool can_play = role != kTrash || store_.PathInTree(i) != ".";
    if (can_play && EqualsIgnoringCase(Property(i, "role"), role)) return i;
    if (!by_name && EqualsIgnoringCase(store_.PathInTree(i), role)) by_name = i;
  }
  return by_name;
}

std::variant<std::size_t, std::string> FolderTree::MakeWithRole(std::size_t tree, std::string_view role) {
  if (const auto found = WithRole(tree, role)) return *found;
  for (std::size_t i = 0; i < store_.folders().size(); ++i) {
    if (store_.folders()[i].tree == tree && !store_.folders()[i].removed) return Make(role, i);
  }
  return "there is no folder";
}

}  // namespace wrenfold
