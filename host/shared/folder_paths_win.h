// Paths as a macro is given them.
#pragma once

#include <filesystem>
#include <string>

#include "host/base/paths.h"
#include "host/charset/charsets.h"

namespace wrenfold {

// The full path as host text.
inline std::string HostPath(const std::filesystem::path& path) {
  return SystemCharsets().Utf8ToHost(PathToUtf8(std::filesystem::absolute(path)));
}

}  // namespace wrenfold
