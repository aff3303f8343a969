// Stands between the library and the system: counts the library's calls and makes one of them fail.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace torture {

// Puts a hook in front of all that WFINFO.dll imports, and of what it binds by GetProcAddress from then on. Nothing
// is ever taken back: the library keeps what it has bound.
void InterceptSystemCalls();

// Calls of one function since the last Arm.
struct Counted {
  std::string name;
  unsigned calls;
};

// Forgets the counts; from here on call `nth` (1 is the first) of `name` fails once, none when `nth` is 0.
void Arm(std::string_view name, unsigned nth);
void Disarm();
// Whether the armed call came, and failed.
bool HasFailed();
std::vector<Counted> CallCounts();

// Blocks of LocalAlloc and of the C library that the library has taken and not given back.
long Outstanding();

// Names that came without a row in the table.
std::vector<std::string> WithoutRow();

}  // namespace torture
