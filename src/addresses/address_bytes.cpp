#include "src/addresses/address_bytes.h"

#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace wfinfo {

namespace {

constexpr bool MayMean(unsigned char byte) {
  return byte < 0x20 || byte > 0x7F || byte == '"' || (byte >= '\'' && byte <= ')') || byte == ',' ||
         (byte >= ';' && byte <= '>') || byte == '\\';
}

#ifdef __SSE2__
__m128i InRange(__m128i bytes, char first, char last) {
  const __m128i offset = _mm_sub_epi8(bytes, _mm_set1_epi8(first));
  return _mm_cmpeq_epi8(_mm_min_epu8(offset, _mm_set1_epi8(static_cast<char>(last - first))), offset);
}

std::uint64_t SixteenBytes(const char* bytes) {
  const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  // As signed bytes the control characters and everything from 0x80 on lie below 0x20.
  __m128i hit = _mm_cmplt_epi8(b, _mm_set1_epi8(0x20));
  hit = _mm_or_si128(hit, _mm_cmpeq_epi8(b, _mm_set1_epi8('"')));
  hit = _mm_or_si128(hit, _mm_cmpeq_epi8(b, _mm_set1_epi8(',')));
  hit = _mm_or_si128(hit, _mm_cmpeq_epi8(b, _mm_set1_epi8('\\')));
  hit = _mm_or_si128(hit, InRange(b, '\'', ')'));
  hit = _mm_or_si128(hit, InRange(b, ';', '>'));
  return static_cast<unsigned>(_mm_movemask_epi8(hit));
}
#endif

}  // namespace

std::uint64_t AddressByteMaskPortable(const char* block) {
  std::uint64_t mask = 0;
  for (std::size_t i = 0; i < kAddressBlock; ++i) {
    mask |= std::uint64_t{MayMean(static_cast<unsigned char>(block[i]))} << i;
  }
  return mask;
}

std::uint64_t AddressByteMask(const char* block) {
#ifdef __SSE2__
  return SixteenBytes(block) | SixteenBytes(block + 16) << 16 | SixteenBytes(block + 32) << 32 |
         SixteenBytes(block + 48) << 48;
#else
  return AddressByteMaskPortable(block);
#endif
}

void AddressBytes::Load(std::size_t base) {
  base_ = base;
  loaded_ = true;
  if (base + kAddressBlock <= text_.size()) {
    mask_ = AddressByteMask(text_.data() + base);
    return;
  }
  // Filled up with plain bytes: nothing behind the end means anything.
  char block[kAddressBlock];
  std::memset(block, 'x', sizeof block);
  if (base < text_.size()) std::memcpy(block, text_.data() + base, text_.size() - base);
  mask_ = AddressByteMask(block);
}

}  // namespace wfinfo
