// Parts of host text by byte counts, escapes and unit-wise searches. No function cuts a character in half.
#pragma once

#include <cstddef>
#include <string_view>

#include "src/text/host_text.h"

namespace wfinfo {

// The first `count` bytes of `text`; fewer when a character stands across the cut, or one of the last three
// bytes is a 0x1A. A count below 1 gives "".
std::string_view LeftPart(std::string_view text, int count);

// The last `count` bytes; more when a character or an escape stands across the start.
std::string_view RightPart(std::string_view text, int count);

// `count` bytes from `start` on; the start moves back as in RightPart. "" for a start or count outside
// the text.
std::string_view MiddlePart(std::string_view text, int start, int count);

// `start`, at most the size of `text`, moved back so that no unit begins before and ends behind it.
std::size_t StartOfUnit(std::string_view text, std::size_t start);

// Copies `text` to `out` with a backslash in front of every double quote and single-byte backslash. Stops
// before the next unit once kEscapedLimit bytes are written, so `out` has room for kEscapedRoom bytes.
// Returns their number.
inline constexpr std::size_t kEscapedLimit = 8190;
inline constexpr std::size_t kEscapedRoom = kEscapedLimit - 1 + kEscapeLength;
std::size_t EscapeQuotes(std::string_view text, char* out);

// True when `text` is at least 3 and less than 8192 bytes long and begins and ends with a double quote.
bool IsEnclosedInQuotes(std::string_view text);

// What stands behind the last backslash of `path`, or all of it.
std::string_view BaseName(std::string_view path);

// True when `part` occurs in `text` from the beginning of a unit on. An empty part always does.
bool Includes(std::string_view text, std::string_view part);

}  // namespace wfinfo
