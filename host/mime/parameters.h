// Header values with parameters (RFC 2045), continued and encoded ones included (RFC 2231).
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/charset/charsets.h"

namespace wrenfold {

// A value with parameters: Content-Type, Content-Disposition.
struct ParameterizedValue {
  std::string value;  // lower case, printable ASCII, without comments
  std::vector<std::pair<std::string, std::u16string>> parameters;  // names in lower case; RFC 2231 resolved
};

ParameterizedValue ParseParameters(std::string_view text, const Charsets& charsets);
const std::u16string* FindParameter(const ParameterizedValue& parsed, std::string_view name);

}  // namespace wrenfold
