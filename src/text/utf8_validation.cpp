// Validation of UTF-8. The wide kernel follows the published method of classifying each pair of neighbouring
// bytes by three nibbles (J. Keiser, D. Lemire, "Validating UTF-8 In Less Than One Instruction Per Byte",
// 2021).
#include <immintrin.h>

#include <array>
#include <cstdint>
#include <cstring>

#include "text/utf8_text.h"

namespace wfinfo {
namespace {

// --- One sequence after the other, with blocks for plain ASCII and for runs of three-byte characters -------

constexpr bool IsTrail(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// Length of the well-formed sequence at `bytes`, of which `left` are there; 0 when it is none.
std::size_t SequenceLength(const unsigned char* bytes, std::size_t left) {
  const unsigned char lead = bytes[0];
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4 || left < 2 || !IsTrail(bytes[1])) return 0;
  if (lead < 0xE0) return 2;
  if (left < 3 || !IsTrail(bytes[2])) return 0;
  if (lead < 0xF0) {
    const bool overlong = lead == 0xE0 && bytes[1] < 0xA0;
    const bool surrogate = lead == 0xED && bytes[1] >= 0xA0;
    return overlong || surrogate ? 0 : 3;
  }
  if (left < 4 || !IsTrail(bytes[3])) return 0;
  const bool overlong = lead == 0xF0 && bytes[1] < 0x90;
  const bool too_large = lead == 0xF4 && bytes[1] >= 0x90;
  return overlong || too_large ? 0 : 4;
}

constexpr std::size_t kBlock = 16;

// Bytes at `bytes`, of which 16 are there, that need no closer look: all 16 when they are ASCII, 15 when they
// are five three-byte characters without the two lead bytes that restrict what follows, else 0.
std::size_t EasyBytes(const unsigned char* bytes) {
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  if (_mm_movemask_epi8(block) == 0) return kBlock;
  const char lead = static_cast<char>(0xF0), trail = static_cast<char>(0xC0);
  const __m128i fixed = _mm_setr_epi8(lead, trail, trail, lead, trail, trail, lead, trail, trail, lead, trail,
                                      trail, lead, trail, trail, 0);
  const char e0 = static_cast<char>(0xE0), ed = static_cast<char>(0xED), c80 = static_cast<char>(0x80);
  const __m128i wanted =
      _mm_setr_epi8(e0, c80, c80, e0, c80, c80, e0, c80, c80, e0, c80, c80, e0, c80, c80, 0);
  const __m128i pattern = _mm_cmpeq_epi8(_mm_and_si128(block, fixed), wanted);
  const __m128i restricted =
      _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8(e0)), _mm_cmpeq_epi8(block, _mm_set1_epi8(ed)));
  const int good = _mm_movemask_epi8(pattern) & ~_mm_movemask_epi8(restricted) & 0x7FFF;
  return good == 0x7FFF ? 15 : 0;
}

bool ValidateBySequence(std::string_view text) {
  const auto* at = reinterpret_cast<const unsigned char*>(text.data());
  std::size_t left = text.size();
  while (left > 0) {
    std::size_t length = left >= kBlock ? EasyBytes(at) : 0;
    if (length == 0) length = SequenceLength(at, left);
    if (length == 0) return false;
    at += length;
    left -= length;
  }
  return true;
}

// --- AVX2: 32 bytes at a time ------------------------------------------------------------------------------

// What may be wrong with two neighbouring bytes, as sets of nibbles: the high and the low one of the first
// byte, the high one of the second. Bit n of a set stands for the nibble n. A pair is in error when all three
// agree.
struct Rule {
  std::uint16_t first_high, first_low, second_high;
};

constexpr std::uint16_t kAny = 0xFFFF;
constexpr std::uint16_t kAscii = 0x00FF;  // 0-7
constexpr std::uint16_t kTrail = 0x0F00;  // 8-B
constexpr std::uint16_t kLead = 0xF000;   // C-F

constexpr Rule kRules[8] = {
    {kLead, kAny, static_cast<std::uint16_t>(kAscii | kLead)},  // a lead byte without a trail byte
    {kAscii, kAny, kTrail},                                     // a trail byte behind ASCII
    {1 << 0xC, 1 << 0 | 1 << 1, kTrail},                        // C0, C1: ASCII in two bytes
    {1 << 0xE, 1 << 0, 1 << 8 | 1 << 9},                        // E0 80-9F: two bytes would do
    {1 << 0xE, 1 << 0xD, 1 << 0xA | 1 << 0xB},                  // ED A0-BF: surrogates
    {1 << 0xF, 0xFFE1, 1 << 8},                                 // F0 80-8F: three would do; F5-FF: too large
    {1 << 0xF, 0xFFF0, 1 << 9 | 1 << 0xA | 1 << 0xB},           // F4 90-BF and above: too large
    {kTrail, kAny, kTrail},  // two trail bytes: right only inside a long sequence
};
constexpr int kTwoTrails = 7;
static_assert(kRules[kTwoTrails].first_high == kTrail);

using NibbleTable = std::array<std::uint8_t, 16>;

// For each nibble the rules, one bit each, whose set `set` holds it.
constexpr NibbleTable TableOf(std::uint16_t Rule::*set) {
  NibbleTable table{};
  for (std::size_t nibble = 0; nibble < 16; ++nibble) {
    for (int rule = 0; rule < 8; ++rule) {
      if ((kRules[rule].*set >> nibble & 1) != 0) table[nibble] |= static_cast<std::uint8_t>(1 << rule);
    }
  }
  return table;
}

alignas(16) constexpr NibbleTable kFirstHigh = TableOf(&Rule::first_high);
alignas(16) constexpr NibbleTable kFirstLow = TableOf(&Rule::first_low);
alignas(16) constexpr NibbleTable kSecondHigh = TableOf(&Rule::second_high);

#define WFINFO_AVX2 __attribute__((target("avx2"), always_inline)) inline

WFINFO_AVX2 __m256i Spread(const NibbleTable& table) {
  return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(table.data())));
}

WFINFO_AVX2 __m256i HighNibbles(__m256i bytes) {
  return _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(0x0F));
}

// The bytes shifted so that each lane holds the one `kDistance` before it.
template <int kDistance>
WFINFO_AVX2 __m256i Shifted(__m256i block, __m256i previous) {
  return _mm256_alignr_epi8(block, _mm256_permute2x128_si256(previous, block, 0x21), 16 - kDistance);
}

// Errors of a block: bytes that are not zero.
WFINFO_AVX2 __m256i Errors(__m256i block, __m256i previous) {
  const __m256i before = Shifted<1>(block, previous);
  const __m256i first_high = _mm256_shuffle_epi8(Spread(kFirstHigh), HighNibbles(before));
  const __m256i first_low =
      _mm256_shuffle_epi8(Spread(kFirstLow), _mm256_and_si256(before, _mm256_set1_epi8(0x0F)));
  const __m256i second_high = _mm256_shuffle_epi8(Spread(kSecondHigh), HighNibbles(block));
  const __m256i pairs = _mm256_and_si256(_mm256_and_si256(first_high, first_low), second_high);
  // The third and fourth byte of a sequence are trail bytes behind trail bytes, and nothing else is.
  const __m256i third =
      _mm256_subs_epu8(Shifted<2>(block, previous), _mm256_set1_epi8(static_cast<char>(0x60)));
  const __m256i fourth =
      _mm256_subs_epu8(Shifted<3>(block, previous), _mm256_set1_epi8(static_cast<char>(0x70)));
  const __m256i must_be_trail =
      _mm256_and_si256(_mm256_or_si256(third, fourth), _mm256_set1_epi8(static_cast<char>(1 << kTwoTrails)));
  return _mm256_xor_si256(must_be_trail, pairs);
}

constexpr std::size_t kWideBlock = 32;

WFINFO_AVX2 __m256i LoadWide(const char* bytes) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
}

__attribute__((target("avx2"))) bool ValidateWide(std::string_view text) {
  __m256i errors = _mm256_setzero_si256();
  __m256i previous = _mm256_setzero_si256();
  std::size_t at = 0;
  for (; at + 2 * kWideBlock <= text.size(); at += 2 * kWideBlock) {
    const __m256i low = LoadWide(text.data() + at);
    const __m256i high = LoadWide(text.data() + at + kWideBlock);
    // ASCII behind a block that ended with ASCII needs no look at pairs.
    if (_mm256_movemask_epi8(_mm256_or_si256(low, high)) == 0 && _mm256_movemask_epi8(previous) >= 0) {
      previous = high;
      continue;
    }
    errors = _mm256_or_si256(errors, _mm256_or_si256(Errors(low, previous), Errors(high, low)));
    previous = high;
  }
  // The rest, filled up with zeros, so that a sequence cut short meets one.
  alignas(kWideBlock) char rest[3 * kWideBlock] = {};
  if (at < text.size()) std::memcpy(rest, text.data() + at, text.size() - at);
  for (std::size_t i = 0; i < sizeof rest; i += kWideBlock) {
    const __m256i block = LoadWide(rest + i);
    errors = _mm256_or_si256(errors, Errors(block, previous));
    previous = block;
  }
  return _mm256_testz_si256(errors, errors) != 0;
}

constexpr Utf8Validator kValidators[] = {{"sequences", &ValidateBySequence}, {"avx2", &ValidateWide}};

}  // namespace

const Utf8Validator* RunnableUtf8Validators(std::size_t* count) {
  *count = __builtin_cpu_supports("avx2") ? 2 : 1;
  return kValidators;
}

bool IsWellFormedUtf8(std::string_view text) {
  std::size_t count;
  const Utf8Validator* const validators = RunnableUtf8Validators(&count);
  return validators[count - 1].is_well_formed(text);
}

}  // namespace wfinfo
