// What this program does when a test starts it once more.
#pragma once

#include <string>

#include "tests/kit/system/child_win.h"

namespace system_tests {

// "bring-to-front WINDOW": the exit code is what Bypass_SetForegroundWindow answers.
Finished RunRole(const std::string& role, const std::string& argument);

// The role of this process, by its command line; -1 when it has none.
int PlayRole(int count, char** arguments);

}  // namespace system_tests
