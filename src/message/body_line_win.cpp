#include "src/message/body_line_win.h"

#include <cstring>

#include "src/bridge/results_win.h"
#include "src/message/raw_message.h"

namespace wfinfo {

const char* ReturnBodyLine(std::string_view line) {
  char* copy = g_resultText;
  if (line.size() >= kShortResultSize) {
    copy = NewResultBlock(line.size() + 1);
    if (copy == nullptr) return kNoText;
    if (IsLongResultKept()) KeepLongResult(copy);
  }
  std::memcpy(copy, line.data(), line.size());
  copy[line.size()] = '\0';
  ClearEscapeMarks(copy, line.size());
  return copy;
}

}  // namespace wfinfo
