#include <windows.h>

#include "host/base/renaming.h"

namespace wrenfold {
namespace {

std::error_code Rename(const std::filesystem::path& from, const std::filesystem::path& to, DWORD flags) {
  if (MoveFileExW(from.c_str(), to.c_str(), flags)) return {};
  return {static_cast<int>(GetLastError()), std::system_category()};
}

}  // namespace

std::error_code RenameOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  return Rename(from, to, MOVEFILE_REPLACE_EXISTING);
}

std::error_code RenameToNew(const std::filesystem::path& from, const std::filesystem::path& to) {
  const std::error_code error = Rename(from, to, 0);
  const bool is_there = error.value() == ERROR_ALREADY_EXISTS || error.value() == ERROR_FILE_EXISTS;
  return is_there ? std::make_error_code(std::errc::file_exists) : error;
}

}  // namespace wrenfold
