#include "src/bridge/value_params_win.h"

#include <windows.h>

#include <cstring>

#include "src/base/slot.h"
#include "src/bridge/host_protocol.h"
#include "src/bridge/report_win.h"
#include "src/text/digits.h"

namespace wfinfo {
namespace {

constexpr long long kNarrowest = 40;
constexpr long long kMostNumber = 65535;  // counts beyond, on both sides, are addresses
constexpr UINT_PTR kDigitsLooked = 100;   // bytes of a count's text that are looked at, and read

long long WidthValue(long long value) {
  if (value <= kUnfoldedWidth) return value;
  const auto* text = FromSlot<const char*>(value);
  return IsText(text) ? LeadingNumber(text) : kUnfoldedWidth;
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

std::string_view ReadableText(const char* text) { return TextAt(text).value_or(std::string_view()); }

}  // namespace wfinfo
