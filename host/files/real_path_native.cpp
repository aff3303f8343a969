#ifndef _WIN32

#include <system_error>

#include "host/files/real_path.h"

namespace wrenfold {

namespace fs = std::filesystem;

fs::path RealPath(const fs::path& path) {
  std::error_code error;
  const fs::path full = fs::absolute(path, error);
  const fs::path real = fs::weakly_canonical(full, error);
  const fs::path normal = (error ? full : real).lexically_normal();
  return normal.has_filename() ? normal : normal.parent_path();
}

}  // namespace wrenfold

#endif
