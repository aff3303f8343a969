// Paths as a macro is given them, and folders that it asks for in vain.
#pragma once

#include <filesystem>
#include <string>

#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"

namespace wrenfold {

// The full path as host text.
inline std::string HostPath(const std::filesystem::path& path) {
  return SystemCharsets().Utf8ToHost(PathToUtf8(std::filesystem::absolute(path)));
}

// The answer when there is no folder of the pair that begins at `slot`.
inline Answer NoSuchFolder(const Request& request, std::size_t slot) {
  if (!request.state.HasRoot()) return request.Fail(kNoOpenMail);
  const std::string_view first = request.Text(slot);
  const std::string_view name = first.empty() ? request.Text(slot + 1) : first;
  return request.Fail("there is no folder '" + SystemCharsets().HostToUtf8(name) + "'");
}

}  // namespace wrenfold
