#include "host/files/safe_saving.h"

#include "host/files/file_reasons.h"

namespace wrenfold {

std::optional<std::string> SaveSafely(const std::filesystem::path& file, std::string_view bytes) {
  const std::filesystem::path folder = file.parent_path();
  if (!folder.empty()) {
    if (auto reason = MakeFolders(folder)) return reason;
  }
  return WriteSafely(file, bytes);
}

}  // namespace wrenfold
