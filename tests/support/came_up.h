// Tells whoever started this test program that it has come up: tools/run_under_wine.sh.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace wfinfo_test {

inline void TellCameUp() {
  const char* const mark = std::getenv("WFINFO_CAME_UP");
  std::FILE* const file = mark != nullptr ? std::fopen(mark, "wb") : nullptr;
  if (file != nullptr) std::fclose(file);
}

}  // namespace wfinfo_test
