// Blanks and folds of address lists.
#pragma once

#include <cstddef>
#include <string_view>

#include "src/text/ascii.h"

namespace wfinfo {

// Length of the line break at `position` of `text` when a blank follows it, else 0.
constexpr std::size_t AddressFoldAt(std::string_view text, std::size_t position) {
  const auto at = [text](std::size_t index) { return index < text.size() ? text[index] : '\0'; };
  const char c = at(position);
  if (!IsLineEnd(c)) return 0;
  const std::size_t length = c == '\r' && at(position + 1) == '\n' ? 2 : 1;
  return IsBlank(at(position + length)) ? length : 0;
}

// Behind the blanks and folds at `position`.
constexpr std::size_t SkipAddressBlanks(std::string_view text, std::size_t position) {
  while (position < text.size()) {
    const std::size_t length = IsBlank(text[position]) ? 1 : AddressFoldAt(text, position);
    if (length == 0) break;
    position += length;
  }
  return position;
}

}  // namespace wfinfo
