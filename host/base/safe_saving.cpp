#include "host/base/safe_saving.h"

#include <system_error>

#include "host/base/file_reasons.h"
#include "host/base/paths.h"

namespace wrenfold {

std::optional<std::string> SaveSafely(const std::filesystem::path& file, std::string_view bytes) {
  std::error_code error;
  const std::filesystem::path folder = file.parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder, error);
  if (!folder.empty() && !std::filesystem::is_directory(folder, error)) {
    return "cannot make the folder " + PathToUtf8(folder);
  }
  return WriteSafely(file, bytes);
}

}  // namespace wrenfold
