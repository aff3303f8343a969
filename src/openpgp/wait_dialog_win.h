// The small dialog that shows while an OpenPGP program works on.
#pragma once

#include <windows.h>

namespace wfinfo {

// Shows the dialog until `process` ends or the user aborts. True when the process has ended.
bool WaitWithDialog(bool gnupg, HANDLE process);

}  // namespace wfinfo
