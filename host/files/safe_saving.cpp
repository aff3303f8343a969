#include "host/files/safe_saving.h"

#include "host/files/file_hold.h"
#include "host/files/file_reasons.h"
#include "host/files/whole_file.h"

namespace wrenfold {

std::optional<std::string> WriteSafely(const std::filesystem::path& file, std::string_view bytes) {
  const FileHold hold(file);
  if (hold.failure()) return hold.failure();
  const WriteOutcome outcome = ReplaceFile(file, bytes);
  return outcome ? std::nullopt : std::optional(WhyUnwritable(file, outcome.reason));
}

std::optional<std::string> SaveSafely(const std::filesystem::path& file, std::string_view bytes) {
  const std::filesystem::path folder = file.parent_path();
  if (!folder.empty()) {
    if (auto reason = MakeFolders(folder)) return reason;
  }
  return WriteSafely(file, bytes);
}

}  // namespace wrenfold
