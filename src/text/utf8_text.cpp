#include "src/text/utf8_text.h"

#include <emmintrin.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "src/text/host_text.h"
#include "src/text/wide_text.h"

namespace wfinfo {
namespace {

constexpr std::size_t kBlock = 16;
constexpr char16_t kByteOrderMark = 0xFEFF;

constexpr unsigned char Byte(char byte) { return static_cast<unsigned char>(byte); }
constexpr bool IsTrail(char byte) { return (Byte(byte) & 0xC0) == 0x80; }

// Length that a lead byte announces, up to the six of the old definition; 0 for a byte that starts
// no sequence.
constexpr std::size_t AnnouncedLength(char lead) {
  const int ones = std::countl_one(Byte(lead));
  return ones >= 2 && ones <= 6 ? static_cast<std::size_t>(ones) : 0;
}

// The character of a sequence of two, three or four bytes, kept to 16 bits.
constexpr char16_t Decoded(std::string_view sequence) {
  unsigned value = Byte(sequence[0]) & (0x7FU >> sequence.size());
  for (const char byte : sequence.substr(1)) value = value << 6 | (Byte(byte) & 0x3F);
  return static_cast<char16_t>(value);
}

// Blocks of 256 characters that mail is written in; from 0xAC on all are.
constexpr auto kPlausibleBlocks = [] {
  constexpr struct {
    unsigned first, last;
  } kRanges[] = {{0x00, 0x07}, {0x09, 0x13}, {0x17, 0x19}, {0x1D, 0x2B},
                 {0x2E, 0x34}, {0x4D, 0xA4}, {0xAC, 0xFF}};
  std::array<bool, 256> blocks{};
  for (const auto& range : kRanges) {
    for (unsigned upper = range.first; upper <= range.last; ++upper) blocks[upper] = true;
  }
  return blocks;
}();

// Plain ASCII at the start of `text`, counted in whole blocks.
std::size_t AsciiBlocks(std::string_view text) {
  std::size_t at = 0;
  while (at + kBlock <= text.size() &&
         _mm_movemask_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at))) == 0) {
    at += kBlock;
  }
  return at;
}

char* WriteCharacter(char* out, char16_t unit, const CodePage& code_page) {
  if (unit < 0x80) {
    *out++ = unit == 0 ? '?' : static_cast<char>(unit);
    return out;
  }
  const std::uint16_t bytes = code_page.Host(unit);
  if (bytes == kNeedsEscape) return WriteEscape(out, unit);
  if (bytes > 0xFF && bytes != kNoHostForm) *out++ = static_cast<char>(bytes >> 8);
  *out++ = bytes == kNoHostForm ? '?' : static_cast<char>(bytes);
  return out;
}

}  // namespace

bool IsLikelyUtf8(std::string_view text) {
  bool found = false;
  while (!text.empty()) {
    text.remove_prefix(AsciiBlocks(text));
    if (text.empty()) break;
    if (Byte(text[0]) < 0x80) {
      text.remove_prefix(1);
      continue;
    }
    const std::size_t length = AnnouncedLength(text[0]);
    if (length < 2 || length > 4 || length > text.size()) return false;
    if (!std::ranges::all_of(text.substr(1, length - 1), IsTrail)) return false;
    const char16_t unit = Decoded(text.substr(0, length));
    if (!found && unit == kByteOrderMark) return true;
    if (!kPlausibleBlocks[unit >> 8]) return false;
    found = true;
    text.remove_prefix(length);
  }
  return found;
}

std::size_t Utf8ToHostRoom(std::string_view text) {
  // A 0x1A alone grows to four bytes; whatever else there is at most doubles.
  return 2 * text.size() + 2 * static_cast<std::size_t>(std::ranges::count(text, kEscapeByte)) + 32;
}

std::size_t Utf8ToHostMbcs(std::string_view text, char* out, const CodePage& code_page) {
  char* const start = out;
  while (!text.empty()) {
    const char byte = text[0];
    std::size_t length = Byte(byte) < 0x80 ? 1 : AnnouncedLength(byte);
    if (byte == kEscapeByte) {
      out = WriteEscape(out, kEscapeByte);
    } else if (Byte(byte) < 0x80) {
      *out++ = byte;
    } else {
      const auto trails = static_cast<std::size_t>(
          std::ranges::find_if_not(text.substr(1, std::max<std::size_t>(length, 1) - 1), IsTrail) -
          text.begin());
      if (trails == text.size() && trails < length) break;
      if (trails < length || length == 0) {
        // No sequence: this byte alone is replaced.
        *out++ = '?';
        length = 1;
      } else if (length > 3) {
        *out++ = '?';
      } else if (const char16_t unit = Decoded(text.substr(0, length)); unit != kByteOrderMark) {
        out = WriteCharacter(out, unit, code_page);
      }
    }
    text.remove_prefix(length);
  }
  return static_cast<std::size_t>(out - start);
}

}  // namespace wfinfo
