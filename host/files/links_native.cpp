#ifndef _WIN32

#include "host/files/links.h"

namespace wrenfold {

bool IsLink(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_symlink(path, error);
}

}  // namespace wrenfold

#endif
