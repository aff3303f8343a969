#include "host/base/safe_saving.h"

#include <system_error>

#include "host/base/file_reasons.h"
#include "host/base/paths.h"

namespace wrenfold {
namespace {

// Why there is no folder: a file may stand in its place, or in that of one above it.
std::string WhyNoFolder(const std::filesystem::path& folder) {
  std::error_code error;
  for (std::filesystem::path at = folder; at.has_filename(); at = at.parent_path()) {
    if (std::filesystem::is_directory(at, error)) break;
    if (std::filesystem::exists(at, error)) return ": there is a file " + PathToUtf8(at);
  }
  return "";
}

}  // namespace

std::optional<std::string> SaveSafely(const std::filesystem::path& file, std::string_view bytes) {
  std::error_code error;
  const std::filesystem::path folder = file.parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder, error);
  if (!folder.empty() && !std::filesystem::is_directory(folder, error)) {
    return "cannot make the folder " + PathToUtf8(folder) + WhyNoFolder(folder);
  }
  return WriteSafely(file, bytes);
}

}  // namespace wrenfold
