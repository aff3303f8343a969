// Host text: Shift-JIS (code page 932) in which a character that Shift-JIS cannot hold travels as a
// four-byte escape. This file knows the units that text is made of; nothing else steps by hand.
#pragma once

#include <cstddef>
#include <string_view>

namespace wfinfo {

inline constexpr char kEscapeByte = 0x1A;
inline constexpr std::size_t kEscapeLength = 4;

// First byte of a double-byte character. Fixed ranges, whatever the system's code page is.
constexpr bool IsLeadByte(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
}

// The three bytes behind a 0x1A form an escape when the first two have bit 7 set and the third has its
// low seven bits at most 15 and bit 2 set. (So the last byte may be 0x0D, but never 0x0A.)
constexpr bool IsEscapeTail(char second, char third, char fourth) {
  return (static_cast<unsigned char>(second) & 0x80) != 0 &&
         (static_cast<unsigned char>(third) & 0x80) != 0 &&
         (static_cast<unsigned char>(fourth) & 0x74) == 0x04;
}

// True when `text` begins with a whole escape.
constexpr bool StartsWithEscape(std::string_view text) {
  return text.size() >= kEscapeLength && text[0] == kEscapeByte && IsEscapeTail(text[1], text[2], text[3]);
}

// Length in bytes of the unit that `text` begins with: 4 for an escape, 2 for a double-byte character, else 1
// (also for a lead byte that ends the text and a 0x1A that starts no escape); 0 for an empty text.
constexpr std::size_t UnitLength(std::string_view text) {
  if (text.empty()) return 0;
  if (StartsWithEscape(text)) return kEscapeLength;
  return IsLeadByte(text[0]) && text.size() >= 2 ? 2 : 1;
}

// The unit that `text` begins with, as a view into it.
constexpr std::string_view NextUnit(std::string_view text) { return text.substr(0, UnitLength(text)); }

// True when byte `position` of `text` is the second byte of a double-byte character: the byte before it is a
// lead byte, and a walk from the start steps over the position instead of landing on it. `position` may equal
// the length. Bytes inside an escape do not count unless a lead byte stands before them.
bool SplitsUnit(std::string_view text, std::size_t position);

// Where to cut `text` at `cut` bytes (at most its size) or before: one byte less inside a double-byte
// character, then in front of a 0x1A that is one of the three bytes before the cut (the nearest first),
// wherever the text ends.
std::size_t CutBefore(std::string_view text, std::size_t cut);

// Where to cut `text` so that at most `limit` - 1 bytes stay (`limit` >= 1) and no unit is split: the whole
// length when it is below `limit`; else `limit` - 1, one less inside a double-byte character, and then in
// front of a 0x1A that is one of the three bytes before the cut (the nearest first).
std::size_t CutLength(std::string_view text, std::size_t limit);

// Copies `text` to `destination` with at most `limit` - 1 bytes and a terminating zero, never ending inside a
// unit. Returns the bytes copied, the zero not counted. `destination` has room for `limit` bytes; `limit`
// >= 1.
std::size_t CopyWithinLimit(char* destination, std::string_view text, std::size_t limit);

}  // namespace wfinfo
