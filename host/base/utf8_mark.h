// The byte order mark that editors put in front of UTF-8 texts.
#pragma once

#include <string_view>

namespace wrenfold {

inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// A text that went through several programs may have it more than once.
constexpr std::string_view WithoutUtf8Mark(std::string_view text) {
  while (text.starts_with(kUtf8Mark)) text.remove_prefix(kUtf8Mark.size());
  return text;
}

}  // namespace wrenfold
