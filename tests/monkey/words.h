// Texts that mean something to an export: every keyword of the library, and what looks like an address, a date, a
// path, a number.
#pragma once

#include <vector>

namespace monkey {

const std::vector<const char*>& Words();

}  // namespace monkey
