// ASCII helpers for protocol words (header names, MIME types): never for text that people read.
#pragma once

#include <string>
#include <string_view>

#include "src/text/ascii.h"
#include "src/text/digits.h"

namespace wrenfold {

using wfinfo::EqualsIgnoringCase;
using wfinfo::IsBlank;
using wfinfo::IsDigit;
using wfinfo::IsLetter;
using wfinfo::IsLineEnd;
using wfinfo::LowerAscii;

// Value of a hexadecimal digit, -1 for any other character.
constexpr int HexValue(char c) {
  if (IsDigit(c)) return c - '0';
  const char lower = LowerAscii(c);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// Its two hexadecimal digits, in capitals.
inline std::string HexOf(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return {wfinfo::kHexDigits[value >> 4], wfinfo::kHexDigits[value & 15]};
}

inline std::string Lower(std::string_view text) {
  std::string lower;
  for (const char c : text) lower += LowerAscii(c);
  return lower;
}

constexpr std::string_view Trim(std::string_view text) {
  while (!text.empty() && (IsBlank(text.front()) || IsLineEnd(text.front()))) text.remove_prefix(1);
  while (!text.empty() && (IsBlank(text.back()) || IsLineEnd(text.back()))) text.remove_suffix(1);
  return text;
}

// Of ASCII or UTF-8: in host text an escape may end in CR.
inline std::string WithoutLineEnds(std::string_view utf8) {
  std::string line;
  for (const char c : utf8) {
    if (!IsLineEnd(c)) line += c;
  }
  return line;
}

// Bytes of the line that `text` begins with: the line itself, and with its end (CR LF, CR or LF; 0 to
// 2 bytes).
struct LineLength {
  std::size_t text;
  std::size_t with_end;
};

constexpr LineLength FirstLine(std::string_view text) {
  std::size_t end = 0;
  while (end < text.size() && !IsLineEnd(text[end])) ++end;
  if (end == text.size()) return {end, end};
  const bool crlf = text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n';
  return {end, end + (crlf ? 2u : 1u)};
}

}  // namespace wrenfold
