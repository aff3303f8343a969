// The present time as mails and files show it.
#pragma once

#include <string>

namespace wrenfold {

// "Fri, 21 Nov 2025 10:00:00 +0900", in the zone of this machine.
std::string DateHeaderNow();

// A name that no other file has, of any process: time, process and a number of its own, as letters, digits,
// "-" and ".". Names sort by time.
std::string UniqueNameNow();

}  // namespace wrenfold
