// What the numbers mean with which Windows, its sockets and WinINet tell why a call failed.
#pragma once

#include <string>

namespace wrenfold {

// "no such file (system error 2)"; for a number that we have no words for "system error 1717".
std::string SystemReason(unsigned long number);

}  // namespace wrenfold
