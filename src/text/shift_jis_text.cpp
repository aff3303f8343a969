#include "src/text/shift_jis_text.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstddef>

namespace wfinfo {
namespace {

constexpr std::size_t kBlock = 16;

constexpr unsigned char Byte(char byte) { return static_cast<unsigned char>(byte); }

// Plain ASCII at the start of `text`, to the byte while a whole block may be read. At least 1: the first byte
// is known to be plain.
std::size_t AsciiRun(std::string_view text) {
  std::size_t at = 0;
  for (; at + kBlock <= text.size(); at += kBlock) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
    const auto stops = static_cast<unsigned>(_mm_movemask_epi8(block));
    if (stops != 0) return at + static_cast<std::size_t>(std::countr_zero(stops));
  }
  return std::max<std::size_t>(at, 1);
}

}  // namespace

bool LooksLikeShiftJis(std::string_view text, const CodePage& code_page) {
  constexpr unsigned char kFirstRareLead = 0x99;
  constexpr unsigned char kFirstTrail = 0x40;
  std::size_t pairs = 0;
  std::size_t rare = 0;
  std::size_t at = 0;
  while (at < text.size()) {
    if (Byte(text[at]) < 0x80) {
      at += AsciiRun(text.substr(at));
      continue;
    }
    const unsigned row = CodePage::LeadRow(Byte(text[at]));
    if (row >= CodePage::kLeadRows) {
      if (Byte(text[at]) >= 0xFC) return false;
      ++at;
      continue;
    }
    if (at + 1 == text.size()) return false;
    const unsigned char trail = Byte(text[at + 1]);
    if (trail < kFirstTrail || !code_page.IsPair(row, trail)) return false;
    ++pairs;
    rare += row >= CodePage::LeadRow(kFirstRareLead);
    at += 2;
  }
  return rare <= 2 * (pairs - rare);
}

}  // namespace wfinfo
