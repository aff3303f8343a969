#include "src/bridge/value_params_win.h"

#include <windows.h>

#include <climits>
#include <cstring>

#include "src/base/slot.h"
#include "src/bridge/report_win.h"
#include "src/text/ascii.h"
#include "src/text/digits.h"

namespace wfinfo {
namespace {

constexpr long long kNarrowest = 40;
constexpr long long kMostNumber = 65535;  // counts beyond, on both sides, are addresses
constexpr UINT_PTR kDigitsLooked = 100;   // bytes of a count's text that are looked at, and read

// The number that the leading decimal digits of `text` make; a number that is too large stays at INT_MAX.
long long LeadingNumber(const char* text) {
  long long number = 0;
  for (; IsDigit(*text); ++text) {
    number = number * 10 + (*text - '0');
    if (number > INT_MAX) number = INT_MAX;
  }
  return number;
}

long long WidthValue(long long value) {
  if (value <= kNoFolding) return value;
  const auto* text = FromSlot<const char*>(value);
  return IsText(text) ? LeadingNumber(text) : kNoFolding;
}

}  // namespace

long long WidthOf(long long value) {
  const long long width = WidthValue(value);
  return width >= 1 && width < kNarrowest ? kNarrowest : width;
}

int ReadCountParam(long long value) {
  if (value >= -kMostNumber && value <= kMostNumber) return static_cast<int>(value);
  const auto* const text = FromSlot<const char*>(value);
  if (IsBadStringPtrA(text, kDigitsLooked)) return 0;
  return ReadCount({text, strnlen(text, kDigitsLooked)});
}

std::string_view ReadableText(const char* text) {
  return IsReadableText(text) ? std::string_view(text) : std::string_view();
}

}  // namespace wfinfo
