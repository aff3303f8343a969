#include "host/mail/quoting.h"

#include "host/base/ascii.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

using wfinfo::NextUnit;

struct Line {
  std::string_view text;
  std::string_view end;  // as it should be written; empty at the end of the text
};

// Takes one line and its end (LF, CR, CR LF, CR CR LF) off `text`.
Line TakeLine(std::string_view& text) {
  std::size_t length = 0;
  while (length < text.size() && !IsLineEnd(text[length])) {
    // No second byte of a double-byte character is CR or LF; the last one of an escape may be.
    length += wfinfo::StartsWithEscape(text.substr(length)) ? wfinfo::kEscapeLength : 1;
  }
  Line line{text.substr(0, length), ""};
  text.remove_prefix(length);
  const bool unfolded = text.starts_with("\r\r\n");
  if (!text.empty()) line.end = unfolded ? "\r\r\n" : "\r\n";
  const std::size_t taken = unfolded ? 3 : text.starts_with("\r\n") ? 2 : text.empty() ? 0 : 1;
  text.remove_prefix(taken);
  return line;
}

// Bytes of `line` that fit `width` columns, at least one unit: up to the last blank when the line goes on.
std::size_t FittingLength(std::string_view line, std::size_t width) {
  std::size_t length = 0;
  std::size_t columns = 0;
  std::size_t behind_blank = 0;
  while (length < line.size()) {
    const std::string_view unit = NextUnit(line.substr(length));
    columns += UnitColumns(unit);
    if (columns > width && unit != " " && length > 0) return behind_blank > 0 ? behind_blank : length;
    length += unit.size();
    if (unit == " ") behind_blank = length;
  }
  return length;
}

}  // namespace

std::size_t UnitColumns(std::string_view unit) {
  // Bit 3 of an escape's last byte says that the character is full width.
  if (unit.size() == wfinfo::kEscapeLength) return (unit[3] & 0x08) != 0 ? 2 : 1;
  return unit.size();
}

std::string FoldAndQuote(std::string_view text, std::string_view mark, std::size_t width) {
  std::string quoted;
  while (!text.empty()) {
    const Line line = TakeLine(text);
    const bool folds = width < kNoFolding && line.end != "\r\r\n";
    std::string_view rest = line.text;
    do {
      const std::size_t length = folds ? FittingLength(rest, width) : rest.size();
      quoted.append(mark).append(rest.substr(0, length));
      rest.remove_prefix(length);
      quoted.append(rest.empty() ? line.end : "\r\n");
    } while (!rest.empty());
  }
  return quoted;
}

}  // namespace wrenfold
