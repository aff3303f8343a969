#include <windows.h>

#include "host/files/links.h"

namespace wrenfold {

// std::filesystem takes junctions for folders, and with this compiler's library links too.
bool IsLink(const std::filesystem::path& path) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW(path.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return false;
  FindClose(search);
  if ((found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return false;
  // dwReserved0 has the tag then; the tag 0 is reserved and tells nothing.
  return found.dwReserved0 == 0 || IsReparseTagNameSurrogate(found.dwReserved0);
}

}  // namespace wrenfold
