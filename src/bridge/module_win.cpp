#include "src/bridge/module_win.h"

#include <cstring>
#include <string_view>

namespace wfinfo {

HINSTANCE g_hInstance = nullptr;

namespace {

bool Append(char* path, std::size_t at, std::size_t room, std::string_view tail) {
  if (at + tail.size() >= room) return false;
  std::memcpy(path + at, tail.data(), tail.size());
  path[at + tail.size()] = '\0';
  return true;
}

}  // namespace

bool PathBesideLibrary(std::wstring_view name, wchar_t (&path)[MAX_PATH]) {
  const DWORD length = GetModuleFileNameW(g_hInstance, path, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return false;
  const std::size_t start = std::wstring_view(path, length).rfind(L'\\') + 1;
  if (start + name.size() >= MAX_PATH) return false;
  path[start + name.copy(path + start, name.size())] = L'\0';
  return true;
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
