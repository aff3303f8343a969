// The byte order mark that editors put in front of UTF-8 texts.
#pragma once

#include <string_view>

namespace wrenfold {

inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

constexpr std::string_view WithoutUtf8Mark(std::string_view text) {
  if (text.starts_with(kUtf8Mark)) text.remove_prefix(kUtf8Mark.size());
  return text;
}

}  // namespace wrenfold
