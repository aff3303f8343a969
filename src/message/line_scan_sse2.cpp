// The line kernels in SSE2, which every 64-bit x86 processor has.
#include <emmintrin.h>

#include <cstdint>

#include "src/message/line_scan_sets.h"
#include "src/text/host_text.h"

namespace wfinfo {
namespace {

struct Vec {
  using Type = __m128i;
  static constexpr std::size_t kWidth = 16;

  __attribute__((no_sanitize("address"))) static Type LoadU(const char* p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  }
  static void StoreU(char* p, Type v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
  static Type Fill(char byte) { return _mm_set1_epi8(byte); }
  static Type Zero() { return _mm_setzero_si128(); }
  static Type SpreadTopBits(Type v) { return _mm_cmplt_epi8(v, Zero()); }
  static Type Equal(Type a, Type b) { return _mm_cmpeq_epi8(a, b); }
  static Type And(Type a, Type b) { return _mm_and_si128(a, b); }
  static Type AndNot(Type a, Type b) { return _mm_andnot_si128(a, b); }
  static Type Or(Type a, Type b) { return _mm_or_si128(a, b); }
  static Type Xor(Type a, Type b) { return _mm_xor_si128(a, b); }
  static bool Any(Type v) { return _mm_movemask_epi8(v) != 0; }
  static std::uint32_t Bits(Type v) { return static_cast<std::uint32_t>(_mm_movemask_epi8(v)); }
  static Type Tally(Type sum, Type mask) { return _mm_sub_epi8(sum, mask); }
  static std::size_t Sum(Type sum) {
    const Type halves = _mm_sad_epu8(sum, Zero());
    return static_cast<std::size_t>(
        _mm_cvtsi128_si64(_mm_add_epi64(halves, _mm_unpackhi_epi64(halves, halves))));
  }
};

#include "src/message/line_ends_kernel.h"

}  // namespace

const LineKernels kSse2LineKernels = {"SSE2",     FindLineEnd,   CountEnds,  SkipLines,
                                      FindHeader, MeasureFolded, WriteFolded};

}  // namespace wfinfo
