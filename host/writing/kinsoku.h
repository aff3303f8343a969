// Line breaks by the rules for Japanese text (JIS X 4051): no line begins with closing punctuation, a small
// kana or a mark that belongs to the character before it, none ends with an opening bracket.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wrenfold {

// Of one character of host text.
bool MayBeginLine(std::string_view character);
bool MayEndLine(std::string_view character);

// Lines of more than `width` columns are folded where the rules allow it, so that none is wider. At the line
// ends that are there already, double-byte characters that may not begin a line go to the end of the line
// before, brackets that may not end one to the beginning of the next. Lines that end in CR CR LF stay as
// they are.
std::string ApplyKinsoku(std::string_view text, std::size_t width);

}  // namespace wrenfold
