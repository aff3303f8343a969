// The small host as programs see it that send mail through the system: hidden, started by the
// library, waiting.
#pragma once

#include <optional>
#include <string>

#include "host/mapi/settings.h"

namespace wrenfold {

// The folder that holds settings.txt, outbox and mails: `given` (UTF-8), else the environment variable
// WRENFOLD_HOME, else the folder of wrenfold.exe. UTF-8.
std::string MapiHome(const std::string& given);

// Serves until WM_CLOSE comes to the frame, which shows on the screen when `shows_window` is set. A second
// server of the desktop leaves the field to the first, and complains only where a window was wanted. The
// exit code.
int RunMapiServer(const std::string& home, const MapiSettings& settings, bool shows_window,
                  void (*complain)(const std::string& line));

// Has the server of this desktop end, and waits until it has. Returns why it does not, else nullopt.
std::optional<std::string> StopMapiServer();

}  // namespace wrenfold
