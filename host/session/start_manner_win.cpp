#include "host/session/start_manner_win.h"

#include <windows.h>

#include <algorithm>

namespace wrenfold {
namespace {

bool StartedHidden() {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  GetStartupInfoW(&startup);
  return (startup.dwFlags & STARTF_USESHOWWINDOW) != 0 && startup.wShowWindow == SW_HIDE;
}

// Of several the count alone is wanted.
DWORD ConsoleProcesses() {
  DWORD process = 0;
  return GetConsoleProcessList(&process, 1);
}

}  // namespace

StartManner OwnStartManner(std::span<const std::string> arguments) {
  const bool has_options = std::any_of(arguments.begin(), arguments.end(),
                                       [](const std::string& argument) { return argument.starts_with("-"); });
  return MannerOf({!arguments.empty(), has_options, ConsoleProcesses(), StartedHidden()});
}

}  // namespace wrenfold
