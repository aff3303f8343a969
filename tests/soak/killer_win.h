// Ends the serving host at random, as a crash would.
#pragma once

#include <string>

namespace soak {

// True while a host has come up.
bool HasFrame();

// One process of `program` (its whole path): mostly the one that has the frame, now and then any, which may be
// just starting. Prints "kill: at 4711 to 4712 process 320" around it; false when none was there.
bool KillHost(const std::string& program, bool with_frame);

}  // namespace soak
