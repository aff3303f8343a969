#include "src/bridge/module_win.h"

#include <cstring>
#include <string_view>

namespace wfinfo {

HINSTANCE g_hInstance = nullptr;

namespace {

// Where the last path component of `path` begins. A path is text of the system's code page, not host text: an
// accented letter in front of a backslash is no lead byte in code page 1252.
std::size_t FileNameStart(std::string_view path) {
  std::size_t start = 0;
  for (std::size_t at = 0; at < path.size(); ++at) {
    if (IsDBCSLeadByte(static_cast<BYTE>(path[at]))) {
      ++at;
    } else if (path[at] == '\\') {
      start = at + 1;
    }
  }
  return start;
}

bool Append(char* path, std::size_t at, std::size_t room, std::string_view tail) {
  if (at + tail.size() >= room) return false;
  std::memcpy(path + at, tail.data(), tail.size());
  path[at + tail.size()] = '\0';
  return true;
}

}  // namespace

bool PathBesideLibrary(const char* name, char* path, std::size_t room) {
  const DWORD length = GetModuleFileNameA(g_hInstance, path, static_cast<DWORD>(room));
  if (length == 0 || length >= room) return false;
  return Append(path, FileNameStart({path, length}), room, name);
}

HMODULE LoadFromSystemDirectory(const char* name) {
  char path[MAX_PATH + 64];
  const UINT length = GetSystemDirectoryA(path, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return nullptr;
  if (!Append(path, length, sizeof path, "\\") || !Append(path, length + 1, sizeof path, name))
    return nullptr;
  return LoadLibraryA(path);
}

HMODULE HoldLoadedModule(const char* name) {
  HMODULE module = nullptr;
  return GetModuleHandleExA(0, name, &module) ? module : nullptr;
}

HMODULE LoadSystemLibrary(const char* name) {
  HMODULE module = HoldLoadedModule(name);
  if (module == nullptr) module = LoadFromSystemDirectory(name);
  return module != nullptr ? module : LoadLibraryA(name);
}

void BindProcTable(HMODULE module, const ProcSlot* table) {
  for (; table->slot != nullptr; ++table) *table->slot = ProcOf<void*>(module, table->name);
}

}  // namespace wfinfo
