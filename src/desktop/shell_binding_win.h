// shell32, bound at its first use: it brings much with it.
#pragma once

#include <windows.h>

namespace wfinfo {

using ShellExecuteFunction = HINSTANCE(WINAPI*)(HWND window, const wchar_t* operation, const wchar_t* file,
                                                const wchar_t* parameters, const wchar_t* directory,
                                                int show);

// Null when it cannot be bound.
ShellExecuteFunction BoundShellExecute();

}  // namespace wfinfo
