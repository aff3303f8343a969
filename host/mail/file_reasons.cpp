#include "host/mail/file_reasons.h"

#include <system_error>

#include "host/base/whole_file.h"
#include "host/mail/mail_store.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

bool Exists(const fs::path& path) {
  std::error_code error;
  return fs::exists(path, error);
}

bool IsFolder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

}  // namespace

std::string WhyUnreadable(const fs::path& file) {
  const std::string begin = "cannot read " + PathToUtf8(file) + ": ";
  if (file.empty()) return "cannot read a file without a name";
  if (IsFolder(file)) return begin + "it is a folder";
  return begin + (Exists(file) ? "access denied" : "no such file or folder");
}

std::string WhyUnwritable(const fs::path& file) {
  const std::string begin = "cannot write " + PathToUtf8(file) + ": ";
  if (file.empty()) return "cannot write a file without a name";
  if (IsFolder(file)) return begin + "it is a folder";
  const fs::path folder = file.parent_path();
  if (!folder.empty() && !IsFolder(folder)) return begin + "there is no folder " + PathToUtf8(folder);
  return begin + "access denied, or no room is left";
}

std::optional<std::string> WriteSafely(const fs::path& file, std::string_view bytes) {
  return ReplaceFile(file, bytes) ? std::nullopt : std::optional(WhyUnwritable(file));
}

}  // namespace wrenfold
