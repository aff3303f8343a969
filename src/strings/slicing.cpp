#include "src/strings/slicing.h"

#include <algorithm>
#include <cstdint>

#include "src/text/simd.h"
#include "src/text/unit_blocks.h"

namespace wfinfo {

namespace {

using Vec = simd::Sse2;

#include "src/text/block_kernel.h"

// The bytes from `start` to `end`, cut back to whole units. The start is one already.
std::string_view Between(std::string_view text, std::size_t start, std::size_t end) {
  const std::string_view part = text.substr(start);
  return part.substr(0, CutBefore(part, end - start));
}

}  // namespace

std::size_t StartOfUnit(std::string_view text, std::size_t start) {
  for (std::size_t back = 1; back <= 3 && back <= start; ++back) {
    if (text[start - back] != kEscapeByte) continue;
    start -= back;
    break;
  }
  // Also behind a move: a lead byte may have taken the 0x1A for its second byte.
  return SplitsUnit(text, start) ? start - 1 : start;
}

std::string_view LeftPart(std::string_view text, int count) {
  if (count <= 0) return {};
  return Between(text, 0, std::min(text.size(), static_cast<std::size_t>(count)));
}

std::string_view RightPart(std::string_view text, int count) {
  if (count <= 0) return {};
  const std::size_t kept = std::min(text.size(), static_cast<std::size_t>(count));
  return Between(text, StartOfUnit(text, text.size() - kept), text.size());
}

std::string_view MiddlePart(std::string_view text, int start, int count) {
  if (start < 0 || count <= 0 || static_cast<std::size_t>(start) >= text.size()) return {};
  const std::size_t from = static_cast<std::size_t>(start);
  const std::size_t end = from + std::min(text.size() - from, static_cast<std::size_t>(count));
  return Between(text, StartOfUnit(text, from), end);
}

std::size_t EscapeQuotes(std::string_view text, char* out) {
  std::size_t length = 0;
  while (!text.empty() && length < kEscapedLimit) {
    const std::string_view unit = NextUnit(text);
    if (unit == "\"" || unit == "\\") out[length++] = '\\';
    length += unit.copy(out + length, unit.size());
    text.remove_prefix(unit.size());
  }
  return length;
}

bool IsEnclosedInQuotes(std::string_view text) {
  return text.size() >= 3 && text.size() < 8192 && text.front() == '"' && text.back() == '"' &&
         !SplitsUnit(text, text.size() - 1);
}

std::string_view BaseName(std::string_view path) {
  std::size_t base = 0;
  for (UnitBlocks blocks(path); blocks.Next();) {
    const std::uint64_t backslashes = Equal(LoadBlock(blocks.bytes()), '\\') & ~blocks.inside();
    if (backslashes != 0) base = blocks.at() + 64 - static_cast<std::size_t>(__builtin_clzll(backslashes));
  }
  return path.substr(base);
}

bool Includes(std::string_view text, std::string_view part) {
  std::size_t border = 0;  // beginning of a unit, at or before the place looked at
  for (std::size_t found = text.find(part); found != text.npos; found = text.find(part, found + 1)) {
    while (border < found) border += UnitLength(text.substr(border));
    if (border == found) return true;
  }
  return false;
}

}  // namespace wfinfo
