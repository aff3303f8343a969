// The count of line ends and the search for a header in AVX-512, only reached through Lines(), after
// HasAvx512() has been asked. Bytes are compared into masks, and one question is left for 256 bytes.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "src/message/line_scan_sets.h"
#include "src/text/ascii.h"
#include "src/text/host_text.h"
#include "src/text/simd.h"

WFINFO_BEGIN_AVX512

namespace wfinfo {
namespace {

struct Vec {
  static constexpr std::size_t kWidth = 64;
  static std::size_t CountBits(std::uint64_t bits) {
    return static_cast<std::size_t>(__builtin_popcountll(bits));
  }
};

#include "src/message/line_count_kernel.h"

constexpr std::size_t kUnroll = kCounted / kWidth;
constexpr int kRounds = 60;  // rounds until the byte sums are emptied: at most 4 * 60 < 256 each

WFINFO_UNCHECKED inline __m512i At(const char* p) { return _mm512_loadu_si512(p); }

WFINFO_UNCHECKED inline std::uint64_t PlacesOf(char byte, const char* p) {
  return _mm512_cmpeq_epi8_mask(At(p), _mm512_set1_epi8(byte));
}

// Adds 1 to each byte sum that is in `mask`.
inline __m512i Tally(__m512i sums, __mmask64 mask) {
  return _mm512_mask_sub_epi8(sums, mask, sums, _mm512_set1_epi8(-1));
}

// Of the bytes at `p` that are in `lone`, those that do not stand behind an escape: the CR before a byte
// belongs to one when the three bytes before that CR begin one.
WFINFO_UNCHECKED inline __mmask64 BehindLineEnds(const char* p, __mmask64 lone) {
  const __mmask64 begun = _mm512_mask_cmpeq_epi8_mask(lone, At(p - 4), _mm512_set1_epi8(kEscapeByte));
  const __mmask64 high = _mm512_movepi8_mask(_mm512_and_si512(At(p - 3), At(p - 2)));
  return _kandn_mask64(_kand_mask64(begun, high), lone);
}

// One round of the counting loop. False, with nothing counted, when the terminator lies in it.
WFINFO_UNCHECKED inline bool CountBlock(const char* p, __m512i& sums) {
  const __m512i line_feed = _mm512_set1_epi8('\n'), carriage_return = _mm512_set1_epi8('\r');
  __m512i least{};  // zero where one of the vectors is
  __mmask64 lf[kUnroll], lone[kUnroll], any_lone = 0;
  for (std::size_t i = 0; i < kUnroll; ++i) {
    const __m512i v = At(p + i * kWidth);
    lf[i] = _mm512_cmpeq_epi8_mask(v, line_feed);
    lone[i] = _mm512_mask_cmpeq_epi8_mask(_knot_mask64(lf[i]), At(p + i * kWidth - 1), carriage_return);
    any_lone = i == 0 ? lone[i] : _kor_mask64(any_lone, lone[i]);
    least = i == 0 ? v : _mm512_min_epu8(least, v);
  }
  const __mmask64 zero = _mm512_testn_epi8_mask(least, least);
  if (!_kortestz_mask64_u8(any_lone, zero)) {
    if (zero != 0) return false;
    for (std::size_t i = 0; i < kUnroll; ++i) sums = Tally(sums, BehindLineEnds(p + i * kWidth, lone[i]));
  }
  for (std::size_t i = 0; i < kUnroll; ++i) sums = Tally(sums, lf[i]);
  return true;
}

WFINFO_UNCHECKED const char* CountBlocks(const char* p, std::size_t& ends) {
  for (;;) {
    __m512i sums = _mm512_setzero_si512();
    int round = 0;
    while (round < kRounds && CountBlock(p, sums)) {
      p += kCounted;
      ++round;
    }
    const __m512i eighths = _mm512_sad_epu8(sums, _mm512_setzero_si512());
    std::uint64_t parts[8];
    _mm512_storeu_si512(parts, eighths);
    for (const std::uint64_t part : parts) ends += part;
    if (round < kRounds) return p;
  }
}

// Where a line may begin that a search for a header must look at: one that begins with the first letter of
// the prefix or with a CR, and one that does not follow CR LF.
struct LineStarts {
  __m512i first, case_bit;

  explicit LineStarts(std::string_view prefix)
      : first(_mm512_set1_epi8(prefix.empty() ? '\0' : LowerAscii(prefix[0]))),
        case_bit(_mm512_set1_epi8(!prefix.empty() && IsLetter(prefix[0]) ? kAsciiCaseBit : '\0')) {}

  // Among the 64 bytes `v` at `p`, which is not the start of the text.
  WFINFO_UNCHECKED __mmask64 Among(__m512i v, const char* p) const {
    const __m512i line_feed = _mm512_set1_epi8('\n'), carriage_return = _mm512_set1_epi8('\r');
    const __m512i before = At(p - 1);
    const __mmask64 after_lf = _mm512_cmpeq_epi8_mask(before, line_feed);
    const __mmask64 is_first = _mm512_mask_cmpeq_epi8_mask(after_lf, _mm512_or_si512(v, case_bit), first);
    const __mmask64 is_cr = _mm512_mask_cmpeq_epi8_mask(after_lf, v, carriage_return);
    const __mmask64 odd =
        _kxor_mask64(_mm512_cmpeq_epi8_mask(v, line_feed), _mm512_cmpeq_epi8_mask(before, carriage_return));
    return _kor_mask64(_kor_mask64(is_first, is_cr), odd);
  }
};

// Looks at the `places` from `p` on, lowest first. True when the search ended, as it does at the terminator.
WFINFO_UNCHECKED inline bool ExamineAll(HeaderLines& lines, const char* p, std::uint64_t places) {
  for (; places != 0; places &= places - 1) {
    if (lines.Examine(p + __builtin_ctzll(places))) return true;
  }
  return false;
}

// From the start of the text to the next step: every place behind a CR or a LF.
WFINFO_UNCHECKED inline bool ExamineFirstStep(HeaderLines& lines, const char* p) {
  const std::uint64_t valid = ~std::uint64_t{0} << Offset(lines.text, kStep);
  const std::uint64_t ends = (PlacesOf('\r', p) | PlacesOf('\n', p)) & valid;
  return lines.Examine(lines.text) || ExamineAll(lines, p, ends << 1 | (PlacesOf('\0', p) & valid));
}

WFINFO_UNCHECKED inline bool ExamineStep(HeaderLines& lines, const LineStarts& starts, const char* p) {
  return ExamineAll(lines, p, starts.Among(At(p), p) | PlacesOf('\0', p));
}

WFINFO_UNCHECKED HeaderHit FindHeader(const char* text, std::string_view prefix, std::size_t index) {
  HeaderLines lines{text, prefix, index};
  const char* p = text - Offset(text, kStep);
  if (ExamineFirstStep(lines, p)) return lines.hit;
  const LineStarts starts(prefix);
  for (p += kStep; Offset(p, kCounted) != 0; p += kStep) {
    if (ExamineStep(lines, starts, p)) return lines.hit;
  }
  for (;; p += kCounted) {
    __mmask64 places[kUnroll], any = 0;
    __m512i least{};  // zero where one of the vectors is
    for (std::size_t i = 0; i < kUnroll; ++i) {
      const __m512i v = At(p + i * kWidth);
      least = i == 0 ? v : _mm512_min_epu8(least, v);
      places[i] = starts.Among(v, p + i * kWidth);
      any = i == 0 ? places[i] : _kor_mask64(any, places[i]);
    }
    const __mmask64 zero = _mm512_testn_epi8_mask(least, least);
    if (_kortestz_mask64_u8(any, zero)) continue;
    if (zero != 0) break;
    for (std::size_t of = 0; of < kUnroll; ++of) {
      if (ExamineAll(lines, p + of * kWidth, places[of])) return lines.hit;
    }
  }
  while (!ExamineStep(lines, starts, p)) p += kStep;
  return lines.hit;
}

}  // namespace

LineTally CountEndsAvx512(const char* text) { return CountEnds(text); }

HeaderHit FindHeaderAvx512(const char* text, std::string_view prefix, std::size_t index) {
  return FindHeader(text, prefix, index);
}

}  // namespace wfinfo

WFINFO_END_AVX512
