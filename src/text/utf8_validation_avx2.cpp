// Validation of UTF-8 in AVX2, only reached through the table at the end, after HasAvx2() has been asked. It
// follows the published method of classifying each pair of neighbouring bytes by three nibbles (J. Keiser,
// D. Lemire, "Validating UTF-8 In Less Than One Instruction Per Byte", 2021).
#include <array>
#include <cstdint>
#include <cstring>

#include "src/text/simd.h"
#include "src/text/utf8_validation_sets.h"

namespace wfinfo {
namespace {

// What may be wrong with two neighbouring bytes, as sets of nibbles: the high and the low one of the first
// byte, the high one of the second. Bit n of a set stands for the nibble n. A pair is in error when all
// three agree.
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

}  // namespace
}  // namespace wfinfo

WFINFO_BEGIN_AVX2

namespace wfinfo {
namespace {

inline __m256i Spread(const NibbleTable& table) {
  return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(table.data())));
}

inline __m256i HighNibbles(__m256i bytes) {
  return _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(0x0F));
}

// The bytes shifted so that each lane holds the one `kDistance` before it.
template <int kDistance>
inline __m256i Shifted(__m256i block, __m256i previous) {
  return _mm256_alignr_epi8(block, _mm256_permute2x128_si256(previous, block, 0x21), 16 - kDistance);
}

// Errors of a block: bytes that are not zero.
inline __m256i Errors(__m256i block, __m256i previous) {
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

inline __m256i LoadWide(const char* bytes) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
}

bool ValidateWide(std::string_view text) {
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

}  // namespace

const Utf8Validator kAvx2Utf8Validator = {"AVX2", ValidateWide};

}  // namespace wfinfo

WFINFO_END_AVX2
