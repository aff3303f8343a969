// Wide characters of the three ranges that a rule does not settle, one bit each, lowest bit first.
// full_width_table.cpp is printed by tools/make_full_width_table.py and says which version of Unicode
// it follows.
#pragma once

#include <cstdint>

namespace wfinfo {

extern const std::uint32_t kFullWidth0100[0x2F00 / 32];  // U+0100 to U+2FFF
extern const std::uint32_t kFullWidthA000[0x0C00 / 32];  // U+A000 to U+ABFF
extern const std::uint32_t kFullWidthFB00[0x0400 / 32];  // U+FB00 to U+FEFF

}  // namespace wfinfo
