// Text of an HTML mail that has no plain part, as a browser would show it: read by gumbo, lines at block
// elements, blanks between the cells of a table; scripts, styles and the title are left out.
//
// Soft hyphens and characters without width (U+00AD, U+034F, U+200B, U+2060, U+FEFF) are left out;
// no-break spaces (U+00A0, U+2007, U+202F) become blanks that are not joined to the blanks beside them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wrenfold {

struct HtmlLimits {
  std::size_t html_bytes = std::size_t{8} << 20;      // of UTF-8; of more the beginning is read
  std::size_t memory_bytes = std::size_t{256} << 20;  // of the parser: some HTML gives the square of its size
  unsigned depth = 20000;                             // elements within elements
};

// Line ends are CR LF, inside <pre> LF. What is cut, or goes beyond the other limits, ends in a line that
// says so: no mail reads empty.
std::u16string TextOfHtml(std::u16string_view html, const HtmlLimits& limits = {});

}  // namespace wrenfold
