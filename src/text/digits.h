// Numbers written as text.
#pragma once

#include <string_view>

namespace wfinfo {

inline constexpr char kHexDigits[] = "0123456789ABCDEF";

// The number that the decimal digits at the start of `text` make, 0 without one. Values above the largest int
// give that.
int LeadingNumber(std::string_view text);

// The same for a text of digits alone; 0 for any other.
int ReadCount(std::string_view text);

}  // namespace wfinfo
