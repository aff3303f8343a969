#include "bridge/value_params_win.h"

#include <windows.h>

#include <climits>

#include "bridge/report_win.h"

namespace wfinfo {
namespace {

constexpr long long kNarrowest = 40;

// The number that the leading decimal digits of `text` make; a number that is too large stays at INT_MAX.
long long LeadingNumber(const char* text) {
  long long number = 0;
  for (; *text >= '0' && *text <= '9'; ++text) {
    number = number * 10 + (*text - '0');
    if (number > INT_MAX) number = INT_MAX;
  }
  return number;
}

long long WidthValue(long long value) {
  if (value <= kNoFolding) return value;
  const auto* text = reinterpret_cast<const char*>(static_cast<INT_PTR>(value));
  return IsText(text) ? LeadingNumber(text) : kNoFolding;
}

}  // namespace

long long WidthOf(long long value) {
  const long long width = WidthValue(value);
  return width >= 1 && width < kNarrowest ? kNarrowest : width;
}

}  // namespace wfinfo
