// Countries by the codes of ISO 3166-1.
#pragma once

#include <string_view>

namespace wrenfold {

struct Country {
  std::string_view code;  // two capitals
  std::string_view name;  // short English name, UTF-8
};

// The country of a two-letter code in any case, or null.
const Country* FindCountry(std::string_view code);

}  // namespace wrenfold
