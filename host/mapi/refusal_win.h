// Mails of other programs that meet a host which runs macros. Those programs look for the frame of any host
// on the desktop; this one has no outbox for them.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace wrenfold {

// Answers the messages of programs that send or read mails through the system, so that none of them waits,
// and tells `complain` (UTF-8) what was refused and what to do. nullopt for other messages.
std::optional<LRESULT> RefuseOtherProgram(UINT message, WPARAM wparam, LPARAM lparam,
                                          void (*complain)(const std::string& line));

}  // namespace wrenfold
