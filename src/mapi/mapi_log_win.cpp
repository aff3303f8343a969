#include "src/mapi/mapi_log_win.h"

#include <windows.h>

#include <cstring>

#include "src/base/unique_win.h"
#include "src/bridge/debug_log_win.h"
#include "src/bridge/host_protocol.h"

namespace wfinfo::mapi {

void Log(const char* line) { WriteDebugLog(line, kLogGeneral); }

void LogParts(std::initializer_list<std::string_view> parts) {
  std::size_t length = 0;
  for (const std::string_view part : parts) length += part.size();
  const UniqueLocal line(LocalAlloc(LPTR, length + 1));
  if (!line) return;
  auto* out = static_cast<char*>(line.get());
  for (const std::string_view part : parts) {
    if (!part.empty()) std::memcpy(out, part.data(), part.size());
    out += part.size();
  }
  Log(static_cast<const char*>(line.get()));
}

void LogNumber(const char* format, unsigned number) {
  char line[128];
  wsprintfA(line, format, number);
  Log(line);
}

}  // namespace wfinfo::mapi
