#include "host/writing/quoting.h"

#include <algorithm>

#include "host/base/ascii.h"
#include "src/text/host_text.h"
#include "src/text/wide_text.h"

namespace wrenfold {
namespace {

using wfinfo::NextUnit;

bool IsSurrogate(std::string_view unit, char16_t first) {
  return unit.size() == wfinfo::kEscapeLength && (wfinfo::EscapedUnit(unit.data()) & 0xFC00) == first;
}

// Bytes of `line` that fit `width` columns, at least one character: up to the last blank when
// the line goes on.
std::size_t FittingLength(std::string_view line, std::size_t width) {
  std::size_t length = 0;
  std::size_t columns = 0;
  std::size_t behind_blank = 0;
  while (length < line.size()) {
    const std::string_view character = NextCharacter(line.substr(length));
    columns += CharacterColumns(character);
    if (columns > width && character != " " && length > 0) return behind_blank > 0 ? behind_blank : length;
    length += character.size();
    if (character == " ") behind_blank = length;
  }
  return length;
}

bool EndsWithBlank(std::string_view line) {
  std::string_view last;
  while (!line.empty()) {
    last = NextCharacter(line);
    line.remove_prefix(last.size());
  }
  return last == " ";
}

// Takes what stands in one line off `rest`. Behind the blanks that the line begins with it is not broken.
std::string_view TakeHeaderRow(std::string_view& rest, std::size_t width) {
  const std::size_t blanks = std::min(rest.find_first_not_of(' '), rest.size());
  const std::size_t left = width > blanks ? width - blanks : 1;
  std::string_view row = rest.substr(0, blanks + FittingLength(rest.substr(blanks), left));
  rest.remove_prefix(row.size());
  if (!rest.empty() && EndsWithBlank(row)) row.remove_suffix(1);
  return row;
}

}  // namespace

HostLine TakeLine(std::string_view& text) {
  std::size_t length = 0;
  while (length < text.size() && !IsLineEnd(text[length])) {
    // No second byte of a double-byte character is CR or LF; the last one of an escape may be.
    length += wfinfo::StartsWithEscape(text.substr(length)) ? wfinfo::kEscapeLength : 1;
  }
  HostLine line{text.substr(0, length), ""};
  text.remove_prefix(length);
  const bool unfolded = text.starts_with("\r\r\n");
  if (!text.empty()) line.end = unfolded ? "\r\r\n" : "\r\n";
  const std::size_t taken = unfolded ? 3 : text.starts_with("\r\n") ? 2 : text.empty() ? 0 : 1;
  text.remove_prefix(taken);
  return line;
}

std::string_view NextCharacter(std::string_view line) {
  const std::string_view unit = NextUnit(line);
  if (!IsSurrogate(unit, 0xD800)) return unit;
  const std::string_view second = NextUnit(line.substr(unit.size()));
  return IsSurrogate(second, 0xDC00) ? line.substr(0, unit.size() + second.size()) : unit;
}

// Each half of a character above U+FFFF takes one column.
std::size_t CharacterColumns(std::string_view character) {
  return character.size() > wfinfo::kEscapeLength ? 2 : UnitColumns(character);
}

std::size_t UnitColumns(std::string_view unit) {
  // Bit 3 of an escape's last byte says that the character is full width.
  if (unit.size() == wfinfo::kEscapeLength) return (unit[3] & 0x08) != 0 ? 2 : 1;
  return unit.size();
}

std::string FoldAndQuote(std::string_view text, std::string_view mark, std::size_t width) {
  std::string quoted;
  while (!text.empty()) {
    const HostLine line = TakeLine(text);
    const bool folds = width < kUnfoldedWidth && line.end != "\r\r\n";
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

std::string FoldHeaders(std::string_view text, std::size_t width) {
  std::string folded;
  while (!text.empty()) {
    const HostLine line = TakeLine(text);
    std::string_view rest = line.text;
    if (width >= kUnfoldedWidth || line.end == "\r\r\n") {
      folded.append(rest).append(line.end);
      continue;
    }
    folded += TakeHeaderRow(rest, width);
    while (!rest.empty()) folded.append("\r\n ").append(TakeHeaderRow(rest, width - 1));
    folded += line.end;
  }
  return folded;
}

}  // namespace wrenfold
