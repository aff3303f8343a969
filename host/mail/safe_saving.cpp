#include "host/mail/safe_saving.h"

#include <system_error>

#include "host/base/whole_file.h"
#include "host/mail/mail_store.h"

namespace wrenfold {

std::optional<std::string> SaveSafely(const std::filesystem::path& file, std::string_view bytes) {
  std::error_code error;
  const std::filesystem::path folder = file.parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder, error);
  if (!folder.empty() && !std::filesystem::is_directory(folder, error)) {
    return "cannot make the folder " + PathToUtf8(folder);
  }
  if (!ReplaceFile(file, bytes)) return "cannot write " + PathToUtf8(file);
  return std::nullopt;
}

}  // namespace wrenfold
