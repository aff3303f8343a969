#include "src/text/host_text.h"

#include <cstring>

namespace wfinfo {

bool SplitsUnit(std::string_view text, std::size_t position) {
  if (position == 0 || position > text.size() || !IsLeadByte(text[position - 1])) return false;
  std::size_t at = 0;
  while (at < position) at += UnitLength(text.substr(at));
  return at != position;
}

std::size_t CutBefore(std::string_view text, std::size_t cut) {
  if (SplitsUnit(text, cut)) --cut;
  for (std::size_t back = 1; back <= 3 && back <= cut; ++back) {
    if (text[cut - back] != kEscapeByte) continue;
    cut -= back;
    break;
  }
  // A lead byte may stand in front of the 0x1A and have taken it for its second byte.
  return SplitsUnit(text, cut) ? cut - 1 : cut;
}

std::size_t CutLength(std::string_view text, std::size_t limit) {
  return text.size() < limit ? text.size() : CutBefore(text, limit - 1);
}

std::size_t CopyWithinLimit(char* destination, std::string_view text, std::size_t limit) {
  const std::size_t length = CutLength(text, limit);
  if (length > 0) std::memcpy(destination, text.data(), length);
  destination[length] = '\0';
  return length;
}

}  // namespace wfinfo
