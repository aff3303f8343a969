#include <windows.h>

#include <string>
#include <string_view>
#include <system_error>

#include "host/files/real_path.h"
#include "src/base/unique_win.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

// "\\?\C:\x" as "C:\x", "\\?\UNC\server\x" as "\\server\x": as paths are compared and shown.
fs::path WithoutPrefix(std::wstring_view path) {
  constexpr std::wstring_view kLong = L"\\\\?\\";
  constexpr std::wstring_view kLongUnc = L"\\\\?\\UNC\\";
  if (path.starts_with(kLongUnc)) return std::wstring(L"\\\\").append(path.substr(kLongUnc.size()));
  return path.starts_with(kLong) ? path.substr(kLong.size()) : path;
}

// What the system calls it; "" when it is not there or cannot be opened. std::filesystem::canonical follows
// no links with this compiler's library.
fs::path FinalPath(const fs::path& path) {
  const wfinfo::UniqueFile file(CreateFileW(path.c_str(), 0,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file) return {};
  std::wstring name(MAX_PATH, L'\0');
  DWORD length = GetFinalPathNameByHandleW(file.get(), name.data(), static_cast<DWORD>(name.size()), 0);
  if (length >= name.size()) {
    name.resize(length + 1);
    length = GetFinalPathNameByHandleW(file.get(), name.data(), static_cast<DWORD>(name.size()), 0);
  }
  if (length == 0 || length >= name.size()) return {};
  name.resize(length);
  return WithoutPrefix(name);
}

}  // namespace

fs::path RealPath(const fs::path& path) {
  std::error_code error;
  const fs::path full = fs::absolute(path, error).lexically_normal();
  const fs::path whole = full.has_filename() ? full : full.parent_path();
  fs::path behind;
  for (fs::path at = whole; at.has_relative_path(); at = at.parent_path()) {
    const fs::path found = FinalPath(at);
    if (!found.empty()) return behind.empty() ? found : found / behind;
    behind = behind.empty() ? at.filename() : at.filename() / behind;
  }
  return whole;
}

}  // namespace wrenfold
