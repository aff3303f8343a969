#include <windows.h>

#include "host/files/renaming.h"

namespace wrenfold {
namespace {

// Another program that reads a file keeps it from being renamed or replaced, which the system tells by one
// of these: a host that counts its mails, what looks for viruses in each new file. Both are soon done.
bool MayPass(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_ACCESS_DENIED;
}

std::error_code Rename(const std::filesystem::path& from, const std::filesystem::path& to, DWORD flags) {
  constexpr int kTries = 10;
  constexpr DWORD kTryAgainMs = 20;
  DWORD error = 0;
  for (int tries = 0; tries < kTries; ++tries) {
    if (tries > 0) Sleep(kTryAgainMs);
    if (MoveFileExW(from.c_str(), to.c_str(), flags)) return {};
    error = GetLastError();
    if (!MayPass(error)) break;
  }
  return {static_cast<int>(error), std::system_category()};
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
