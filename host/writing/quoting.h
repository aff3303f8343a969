// How the host folds and quotes host text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "src/bridge/host_protocol.h"

namespace wrenfold {

using wfinfo::kUnfoldedWidth;

inline constexpr std::size_t kDefaultWidth = 72;  // columns
inline constexpr std::string_view kQuoteMark = "> ";

struct HostLine {
  std::string_view text;
  std::string_view end;  // as it should be written, CR LF or CR CR LF; empty at the end of the text
};
// Takes one line and its end (LF, CR, CR LF, CR CR LF) off `text`.
HostLine TakeLine(std::string_view& text);

// The character that `line` begins with: one unit, or the two escapes of a character above U+FFFF.
std::string_view NextCharacter(std::string_view line);
std::size_t CharacterColumns(std::string_view character);

// Columns that one unit of host text takes on a screen: 2 for double-byte characters and full-width escapes.
std::size_t UnitColumns(std::string_view unit);

// Each line of `text` with `mark` in front, folded so that no more than `width` columns of the line's own
// text stand in one line, from kUnfoldedWidth on any number; a word is kept whole where a blank allows it.
// Line ends become CR LF; a line that ends in CR CR LF asks not to be folded and keeps that line end. A
// missing last line end stays missing.
std::string FoldAndQuote(std::string_view text, std::string_view mark, std::size_t width);

// Folds headers as FoldAndQuote folds other texts, so that they are headers still: a line that goes on
// begins with a blank, the one at which it was broken.
std::string FoldHeaders(std::string_view text, std::size_t width);

}  // namespace wrenfold
