// ASCII tests and letter case for words of protocols and macros, by the bytes alone: no locale, every other
// byte stands for itself. Not for text that people read: the second byte of a double-byte character may look
// like a letter.
#pragma once

#include <cstddef>
#include <string_view>

namespace wfinfo {

inline constexpr char kAsciiCaseBit = 'a' - 'A';

constexpr bool IsBlank(char c) { return c == ' ' || c == '\t'; }
constexpr bool IsLineEnd(char c) { return c == '\r' || c == '\n'; }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }
constexpr bool IsLower(char c) { return c >= 'a' && c <= 'z'; }
constexpr bool IsLetter(char c) { return IsLower(c) || IsUpper(c); }

constexpr char LowerAscii(char c) { return IsUpper(c) ? static_cast<char>(c | kAsciiCaseBit) : c; }
constexpr char UpperAscii(char c) { return IsLower(c) ? static_cast<char>(c & ~kAsciiCaseBit) : c; }

constexpr bool StartsWithIgnoringCase(std::string_view text, std::string_view start) {
  if (text.size() < start.size()) return false;
  for (std::size_t at = 0; at < start.size(); ++at) {
    if (LowerAscii(text[at]) != LowerAscii(start[at])) return false;
  }
  return true;
}

constexpr bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && StartsWithIgnoringCase(a, b);
}

}  // namespace wfinfo
