#include "src/text/wide_text.h"

#include <emmintrin.h>

#include <bit>

#include "src/text/full_width_table.h"
#include "src/text/host_text.h"

namespace wfinfo {
namespace {

constexpr std::size_t kBlock = 16;  // bytes that are looked at together

constexpr bool IsSet(const std::uint32_t* bits, unsigned at) { return (bits[at / 32] >> (at % 32) & 1) != 0; }

// How many of the 16 bytes at `bytes`, from the first one on, are ASCII other than 0x1A; all 16 are widened
// to `out` whatever they are, since what is wrong is overwritten by what follows.
std::size_t WidenAscii(const char* bytes, char16_t* out) {
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  const __m128i zero = _mm_setzero_si128();
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(block, zero));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), _mm_unpackhi_epi8(block, zero));
  const __m128i escapes = _mm_cmpeq_epi8(block, _mm_set1_epi8(kEscapeByte));
  const auto stops = static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(block, escapes)));
  return static_cast<std::size_t>(std::countr_zero(stops | 1U << kBlock));
}

// The same for 16 units and their low bytes.
std::size_t NarrowAscii(const char16_t* units, char* out) {
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
  const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + 8));
  const auto plain = [](__m128i block) {
    const __m128i above = _mm_and_si128(block, _mm_set1_epi16(static_cast<short>(0xFF80)));
    const __m128i ascii = _mm_cmpeq_epi16(above, _mm_setzero_si128());
    return _mm_andnot_si128(_mm_cmpeq_epi16(block, _mm_set1_epi16(kEscapeByte)), ascii);
  };
  // Saturation may garble units above ASCII: these bytes are overwritten.
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(low, high));
  const auto ascii = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(plain(low), plain(high))));
  return static_cast<std::size_t>(std::countr_one(ascii));
}

char16_t* WriteUnits(char16_t* out, std::uint32_t units) {
  *out++ = static_cast<char16_t>(units);
  if (units > 0xFFFF) [[unlikely]]
    *out++ = static_cast<char16_t>(units >> 16);
  return out;
}

}  // namespace

bool IsFullWidth(char16_t unit) {
  if (unit < 0x0100) return false;
  if (unit < 0x3000) return IsSet(kFullWidth0100, unit - 0x0100U);
  if (unit < 0xA000) return true;
  if (unit < 0xAC00) return IsSet(kFullWidthA000, unit - 0xA000U);
  if (unit < 0xD800) return true;
  if (unit < 0xE000) return false;
  if (unit < 0xFB00) return true;
  if (unit < 0xFF00) return IsSet(kFullWidthFB00, unit - 0xFB00U);
  return (unit >= 0xFF01 && unit <= 0xFF60) || (unit >= 0xFFE0 && unit <= 0xFFE6);
}

char* WriteEscape(char* out, char16_t unit) {
  out[0] = kEscapeByte;
  out[1] = static_cast<char>(0x80 | (unit & 0x7F));
  out[2] = static_cast<char>(0x80 | (unit >> 8 & 0x7F));
  out[3] = static_cast<char>(0x84 | (unit >> 7 & 1) | (unit >> 15 & 1) << 1 | (IsFullWidth(unit) ? 0x08 : 0));
  return out + kEscapeLength;
}

std::size_t HostToWide(std::string_view host, char16_t* out, const CodePage& code_page) {
  char16_t* const start = out;
  const char* at = host.data();
  const char* const end = at + host.size();
  while (at < end) {
    const auto byte = static_cast<unsigned char>(*at);
    const auto rest = static_cast<std::size_t>(end - at);
    unsigned row = CodePage::LeadRow(byte);
    if (row < CodePage::kLeadRows && rest > 1 && at[1] != '\0') {
      // Pairs mostly stand among pairs: in this loop nothing else is asked for.
      do {
        out = WriteUnits(out, code_page.Pair(row, static_cast<unsigned char>(at[1])));
        at += 2;
        if (end - at < 2) break;
        row = CodePage::LeadRow(static_cast<unsigned char>(*at));
      } while (row < CodePage::kLeadRows && at[1] != '\0');
    } else if (byte > 0x7F) {
      out = WriteUnits(out, code_page.Single(byte));
      ++at;
    } else if (byte == kEscapeByte) {
      const bool escape = StartsWithEscape({at, rest});
      *out++ = escape ? EscapedUnit(at) : kEscapeByte;
      at += escape ? kEscapeLength : 1;
    } else if (rest >= kBlock) {
      // As many units are left to write as bytes to read, so the whole block fits.
      const std::size_t plain = WidenAscii(at, out);
      at += plain;
      out += plain;
    } else {
      *out++ = byte;
      ++at;
    }
  }
  return static_cast<std::size_t>(out - start);
}

std::size_t WideToHost(std::u16string_view wide, char* out, const CodePage& code_page) {
  char* const start = out;
  const char16_t* at = wide.data();
  const char16_t* const end = at + wide.size();
  while (at < end) {
    const char16_t unit = *at;
    if (unit < 0x80 && unit != kEscapeByte) {
      const bool block = static_cast<std::size_t>(end - at) >= kBlock;
      const std::size_t plain = block ? NarrowAscii(at, out) : 1;
      if (!block) *out = static_cast<char>(unit);
      at += plain;
      out += plain;
      continue;
    }
    const std::uint16_t bytes = unit == kEscapeByte ? kNeedsEscape : code_page.Host(unit);
    ++at;
    if (bytes == kNeedsEscape) {
      out = WriteEscape(out, unit);
    } else if (bytes == kNoHostForm) {
      *out++ = '?';
    } else {
      // One byte or two without a branch: the first is written over when there is only one.
      const std::size_t two = bytes > 0xFF;
      out[0] = static_cast<char>(bytes >> 8);
      out[two] = static_cast<char>(bytes);
      out += 1 + two;
    }
  }
  return static_cast<std::size_t>(out - start);
}

}  // namespace wfinfo
