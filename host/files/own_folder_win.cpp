#include "host/files/own_folder_win.h"

#include <windows.h>

namespace wrenfold {

std::wstring OwnFolder() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  path.resize(path.find_last_of(L'\\') + 1);
  return path;
}

}  // namespace wrenfold
