#include "host/mapi/store.h"

#include <system_error>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/files/whole_file.h"
#include "host/mime/sections.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestIdentifier = 255;

bool IsMail(const fs::path& path) { return Lower(PathToUtf8(path.extension())) == ".eml"; }

}  // namespace

std::optional<std::string> MapiStore::Next(std::string_view seed, bool unread_only) const {
  std::set<std::string> later;
  std::error_code error;
  for (fs::directory_iterator entry(folder_, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    if (!IsMail(entry->path())) continue;
    std::string identifier = SystemCharsets().Utf8ToHost(PathToUtf8(entry->path().filename()));
    if (identifier.size() <= kLongestIdentifier && identifier > seed) later.insert(std::move(identifier));
  }
  for (const std::string& identifier : later) {
    if (!unread_only || !IsRead(identifier)) return identifier;
  }
  return std::nullopt;
}

// The identifier is a plain file name of the folder: nothing that leads elsewhere.
std::optional<fs::path> MapiStore::FileOf(std::string_view identifier) const {
  const fs::path name = PathFromUtf8(SystemCharsets().HostToUtf8(identifier));
  if (!IsMail(name) || name.filename() != name || name.has_root_path()) return std::nullopt;
  std::error_code error;
  if (!fs::is_regular_file(folder_ / name, error)) return std::nullopt;
  return folder_ / name;
}

std::optional<std::string> MapiStore::Read(std::string_view identifier) const {
  const auto file = FileOf(identifier);
  return file ? ReadWholeFile(*file) : std::nullopt;
}

MapiResult MapiStore::Delete(std::string_view identifier) {
  const auto file = FileOf(identifier);
  if (!file) return MapiResult::kInvalidMessage;
  std::error_code error;
  return fs::remove(*file, error) ? MapiResult::kSuccess : MapiResult::kFailure;
}

// Read when it was read here, or when its file says so.
bool MapiStore::IsRead(std::string_view identifier) const {
  if (read_.contains(std::string(identifier))) return true;
  const auto raw = Read(identifier);
  if (!raw) return false;
  return FindHeader(SplitMessage(*raw), "Status").find('R') != std::string_view::npos;
}

}  // namespace wrenfold
