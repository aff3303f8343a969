// The face of a serving host that somebody has started by hand.
#pragma once

#include <windows.h>

#include <string>

namespace wrenfold {

// Shows the frame, with words in it that tell what the program does and how it ends: by closing the window.
// The console, when it is this process' alone, goes. `home` is UTF-8.
void ShowServerWindow(HWND frame, const std::string& home);

}  // namespace wrenfold
