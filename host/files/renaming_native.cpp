#ifndef _WIN32

#include <fcntl.h>

#include <cerrno>
#include <cstdio>

#include "host/files/renaming.h"

namespace wrenfold {
namespace {

std::error_code LastError(int answer) {
  return answer == 0 ? std::error_code() : std::error_code(errno, std::generic_category());
}

}  // namespace

std::error_code RenameOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  return LastError(std::rename(from.c_str(), to.c_str()));
}

std::error_code RenameToNew(const std::filesystem::path& from, const std::filesystem::path& to) {
  return LastError(renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE));
}

}  // namespace wrenfold

#endif
