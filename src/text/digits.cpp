#include "src/text/digits.h"

#include <algorithm>
#include <limits>

#include "src/text/ascii.h"

namespace wfinfo {

int LeadingNumber(std::string_view text) {
  constexpr int kMost = std::numeric_limits<int>::max();
  long long value = 0;
  for (const char digit : text) {
    if (!IsDigit(digit)) break;
    value = std::min<long long>(value * 10 + (digit - '0'), kMost);
  }
  return static_cast<int>(value);
}

int ReadCount(std::string_view text) { return std::ranges::all_of(text, IsDigit) ? LeadingNumber(text) : 0; }

}  // namespace wfinfo
