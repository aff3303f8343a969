#include "src/bridge/debug_log_win.h"

#include <windows.h>

#include <cstring>

#include "src/base/unique_win.h"
#include "src/bridge/host_protocol.h"
#include "src/bridge/registry_binding_win.h"

namespace wfinfo {

const void* const* g_hostServices = nullptr;

namespace {

constexpr char kLogName[] = "dump.txt";
constexpr DWORD kHomeRoom = 160;  // bytes of the home directory's name, as the host stores it

// Builds the log's path into `path`; false when the user did not switch the log on. Read anew for every line,
// so that the switch works at once.
bool FindLogPath(char (&path)[kHomeRoom + sizeof kLogName]) {
  const ConfigKey config(KEY_ALL_ACCESS);
  DWORD debug = 0;
  DWORD size = sizeof debug;
  if (!config.Read("Debug", &debug, &size) || debug == 0) return false;
  size = kHomeRoom;
  std::memset(path, 0, sizeof path);
  if (!config.Read("HomeDir", path, &size)) return false;
  std::memcpy(path + std::strlen(path), kLogName, sizeof kLogName);
  return true;
}

void Write(HANDLE file, const char* text) {
  DWORD written = 0;
  WriteFile(file, text, static_cast<DWORD>(std::strlen(text)), &written, nullptr);
}

// The host's logging function; null when the table cannot be read that far or has none.
LogFunction HostLog() {
  const void* const* const entry = g_hostServices + kLogEntry;
  if (IsBadReadPtr(entry, sizeof *entry)) return nullptr;
  return reinterpret_cast<LogFunction>(const_cast<void*>(*entry));
}

}  // namespace

void WriteDebugLog(const char* text, unsigned number) {
  if (g_hostServices != nullptr) {
    if (const LogFunction log = HostLog()) log(text, number);
    return;
  }
  char path[kHomeRoom + sizeof kLogName];
  if (!FindLogPath(path)) return;
  const UniqueFile file(CreateFileA(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return;
  SetFilePointer(file.get(), 0, nullptr, FILE_END);
  SYSTEMTIME now;
  GetLocalTime(&now);
  char head[64];
  wsprintfA(head, "%02u:%02u:%02u.%03u WFINFO:(%u) ", now.wHour, now.wMinute, now.wSecond, now.wMilliseconds,
            number);
  Write(file.get(), head);
  Write(file.get(), text);
  Write(file.get(), "\r\n");
}

}  // namespace wfinfo
