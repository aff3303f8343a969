#include "src/text/digits.h"

#include <algorithm>
#include <limits>

#include "src/text/ascii.h"

namespace wfinfo {

int ReadCount(std::string_view digits) {
  constexpr int kMost = std::numeric_limits<int>::max();
  long long value = 0;
  for (const char digit : digits) {
    if (!IsDigit(digit)) return 0;
    value = std::min<long long>(value * 10 + (digit - '0'), kMost);
  }
  return static_cast<int>(value);
}

}  // namespace wfinfo
