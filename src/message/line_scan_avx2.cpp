// The line kernels in AVX2. Everything in the unnamed namespace is compiled for processors with AVX2 and is
// only reached through the table at the end, after Lines() has asked the processor.
#include <immintrin.h>

#include <cstdint>

#include "src/message/line_scan_sets.h"
#include "src/text/host_text.h"

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2,popcnt,bmi"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2,popcnt,bmi")
#endif

namespace wfinfo {
namespace {

struct Vec {
  using Type = __m256i;
  static constexpr std::size_t kWidth = 32;

  __attribute__((no_sanitize("address"))) static Type LoadU(const char* p) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
  }
  static void StoreU(char* p, Type v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
  static Type Fill(char byte) { return _mm256_set1_epi8(byte); }
  static Type Zero() { return _mm256_setzero_si256(); }
  static Type SpreadTopBits(Type v) { return _mm256_cmpgt_epi8(Zero(), v); }
  static Type Equal(Type a, Type b) { return _mm256_cmpeq_epi8(a, b); }
  static Type And(Type a, Type b) { return _mm256_and_si256(a, b); }
  static Type AndNot(Type a, Type b) { return _mm256_andnot_si256(a, b); }
  static Type Or(Type a, Type b) { return _mm256_or_si256(a, b); }
  static Type Xor(Type a, Type b) { return _mm256_xor_si256(a, b); }
  static bool Any(Type v) { return _mm256_testz_si256(v, v) == 0; }
  static std::uint32_t Bits(Type v) { return static_cast<std::uint32_t>(_mm256_movemask_epi8(v)); }
  static Type Tally(Type sum, Type mask) { return _mm256_sub_epi8(sum, mask); }
  static std::size_t Sum(Type sum) {
    const Type quarters = _mm256_sad_epu8(sum, Zero());
    const __m128i halves =
        _mm_add_epi64(_mm256_castsi256_si128(quarters), _mm256_extracti128_si256(quarters, 1));
    return static_cast<std::size_t>(
        _mm_cvtsi128_si64(_mm_add_epi64(halves, _mm_unpackhi_epi64(halves, halves))));
  }
};

#include "src/message/line_ends_kernel.h"

}  // namespace

const LineKernels kAvx2LineKernels = {"AVX2",     FindLineEnd,   CountEnds,  SkipLines,
                                      FindHeader, MeasureFolded, WriteFolded};

}  // namespace wfinfo

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif
