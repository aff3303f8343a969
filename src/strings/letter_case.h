// Letter case of the ASCII letters in host text.
#pragma once

#include <span>

namespace wfinfo {

// Change a to z, or A to Z, in place; letters inside double-byte characters and escapes stay.
void MakeUpperCase(std::span<char> text);
void MakeLowerCase(std::span<char> text);

}  // namespace wfinfo
