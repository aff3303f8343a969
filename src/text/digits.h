// Numbers written as text.
#pragma once

#include <string_view>

namespace wfinfo {

// A count written as text: decimal digits and nothing else, else 0. Values above the largest int give that.
int ReadCount(std::string_view digits);

}  // namespace wfinfo
