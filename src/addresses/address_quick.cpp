#include "src/addresses/address_quick.h"

#include <immintrin.h>

#include <cstring>

#include "src/addresses/address_blanks.h"
#include "src/text/cpu.h"

namespace wfinfo {
namespace {

constexpr std::size_t kBlock = 64;

// The bytes that matter in a block, a word each, the lowest bit for the first byte. Each is told by its
// value alone.
struct Marks {
  std::uint64_t quote, backslash, lead, opening, closing, less, greater, separator, control;
};

// --- SSE2: every processor of this architecture ------------------------------------------------------------

namespace sse2 {

#define WFINFO_TARGET

// Bits of the bytes from `first` to `last`, after `flip` has been applied to each.
inline std::uint64_t Bits(const __m128i (&part)[4], int first, int last, int flip = 0) {
  std::uint64_t bits = 0;
  for (int i = 3; i >= 0; --i) {
    const __m128i flipped = _mm_xor_si128(part[i], _mm_set1_epi8(static_cast<char>(flip)));
    const __m128i offset = _mm_sub_epi8(flipped, _mm_set1_epi8(static_cast<char>(first)));
    const __m128i hit =
        first == last
            ? _mm_cmpeq_epi8(flipped, _mm_set1_epi8(static_cast<char>(first)))
            : _mm_cmpeq_epi8(_mm_min_epu8(offset, _mm_set1_epi8(static_cast<char>(last - first))), offset);
    bits = bits << 16 | static_cast<unsigned>(_mm_movemask_epi8(hit));
  }
  return bits;
}

inline Marks Load(const char* bytes) {
  const auto* const at = reinterpret_cast<const __m128i*>(bytes);
  const __m128i part[4] = {_mm_loadu_si128(at), _mm_loadu_si128(at + 1), _mm_loadu_si128(at + 2),
                           _mm_loadu_si128(at + 3)};
  // With bit 5 flipped the lead bytes 81-9F and E0-FC are the one range A1-DC.
  return {Bits(part, '"', '"'),         Bits(part, '\\', '\\'),
          Bits(part, 0xA1, 0xDC, 0x20), Bits(part, '(', '('),
          Bits(part, ')', ')'),         Bits(part, '<', '<'),
          Bits(part, '>', '>'),         Bits(part, ',', ',') | Bits(part, ';', ';'),
          Bits(part, 0, 0x1F)};
}

inline std::uint64_t PrefixXor(std::uint64_t bits) {
  for (int shift = 1; shift < 64; shift *= 2) bits ^= bits << shift;
  return bits;
}

#include "src/addresses/address_quick_kernel.h"

#undef WFINFO_TARGET

}  // namespace sse2

// --- AVX2 with the carry-less product and the bit instructions that come with it ---------------------------

namespace avx2 {

#define WFINFO_TARGET __attribute__((target("avx2,pclmul,bmi")))

WFINFO_TARGET inline std::uint64_t Join(__m256i low, __m256i high) {
  const auto bits = [](int mask) { return static_cast<std::uint64_t>(static_cast<unsigned>(mask)); };
  return bits(_mm256_movemask_epi8(low)) | bits(_mm256_movemask_epi8(high)) << 32;
}

WFINFO_TARGET inline __m256i Equal(__m256i bytes, char byte) {
  return _mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(byte));
}

WFINFO_TARGET inline __m256i InRange(__m256i bytes, int first, int last) {
  const __m256i offset = _mm256_sub_epi8(bytes, _mm256_set1_epi8(static_cast<char>(first)));
  return _mm256_cmpeq_epi8(_mm256_min_epu8(offset, _mm256_set1_epi8(static_cast<char>(last - first))),
                           offset);
}

WFINFO_TARGET inline Marks Load(const char* bytes) {
  const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
  const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + 32));
  const __m256i flip = _mm256_set1_epi8(0x20);
  Marks marks;
  marks.quote = Join(Equal(low, '"'), Equal(high, '"'));
  marks.backslash = Join(Equal(low, '\\'), Equal(high, '\\'));
  marks.lead = Join(InRange(_mm256_xor_si256(low, flip), 0xA1, 0xDC),
                    InRange(_mm256_xor_si256(high, flip), 0xA1, 0xDC));
  marks.opening = Join(Equal(low, '('), Equal(high, '('));
  marks.closing = Join(Equal(low, ')'), Equal(high, ')'));
  marks.less = Join(Equal(low, '<'), Equal(high, '<'));
  marks.greater = Join(Equal(low, '>'), Equal(high, '>'));
  marks.separator = Join(_mm256_or_si256(Equal(low, ','), Equal(low, ';')),
                         _mm256_or_si256(Equal(high, ','), Equal(high, ';')));
  marks.control = Join(InRange(low, 0, 0x1F), InRange(high, 0, 0x1F));
  return marks;
}

WFINFO_TARGET inline std::uint64_t PrefixXor(std::uint64_t bits) {
  const __m128i product =
      _mm_clmulepi64_si128(_mm_cvtsi64_si128(static_cast<long long>(bits)), _mm_set1_epi8(-1), 0);
  return static_cast<std::uint64_t>(_mm_cvtsi128_si64(product));
}

#include "src/addresses/address_quick_kernel.h"

#undef WFINFO_TARGET

}  // namespace avx2

bool RefuseAll(std::string_view, QuickAddress*) { return false; }
std::size_t CountNone(std::string_view, std::size_t*) { return 0; }

// Slowest first; the first leaves everything to the scanner.
constexpr AddressKernels kKernels[] = {
    {"scanner", &RefuseAll, &CountNone},
    {"sse2", &sse2::Scan, &sse2::Count},
    {"avx2", &avx2::Scan, &avx2::Count},
};

}  // namespace

std::span<const AddressKernels> RunnableAddressKernels() { return RunnableOf(kKernels); }

const AddressKernels& BestAddressKernels() { return RunnableAddressKernels().back(); }

}  // namespace wfinfo
