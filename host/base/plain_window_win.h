// A window of the host's own class.
#pragma once

#include <windows.h>

namespace wrenfold {

// Registers the class, unless an earlier call did, and makes a hidden window of it. Null when either fails.
HWND MakePlainWindow(const char* class_name, WNDPROC procedure, const char* title, DWORD style, HWND parent);

// The procedure of a window that macros close: Cancel destroys it.
LRESULT AnswerOfClosable(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

}  // namespace wrenfold
