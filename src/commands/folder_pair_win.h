// Two optional texts that name a folder in the host's manner.
#pragma once

#include "src/bridge/report_win.h"

namespace wfinfo {

// True when each of the two is omitted or readable; the first that is neither is reported.
inline bool IsFolderPair(const char* folder1, const char* folder2) {
  return IsTextOrNull(folder1) && IsTextOrNull(folder2);
}

}  // namespace wfinfo
