// Vectors of bytes, one type for each kind of unit. A kernel (`x_kernel.h`) is written over a type `Vec`
// with these members and is included, in an unnamed namespace, by one source file for each unit
// (`x_sse2.cpp`, `x_avx2.cpp`).
//
//   Type, kWidth            a vector, and how many bytes it holds
//   Load, Store             unaligned
//   LoadUnchecked           a Load that may read past the end of an object, though never into another page:
//                           address checks must not see it
//   Fill, Zero              the same byte everywhere
//   Held                    the same vector, which the compiler must not load a second time
//   And, Or, Xor, AndNot    AndNot(a, b) = ~a & b
//   Equal                   0xFF in each byte that is equal
//   AtMost                  0xFF in each byte of `a` that is at most that of `b`, unsigned; not of Words
//   Above                   0xFF in each byte of `a` that is above that of `b`, signed; not of Words
//   Sub                     byte by byte; not of Words
//   ZeroWhereEither         0 in each byte that is 0 in `a` or in `b`, and in no other
//   Any                     true when not all is zero
//   Bits, SpreadTopBits     the top bit of each byte: as a number, byte 0 lowest; as 0xFF or 0 in its byte
//   Tally, Sum              adds a mask to byte sums, one for each 0xFF; the sum of all byte sums
//   CountBits, PrefixXor    of a word: how many bits are set; bit i as the exclusive or of the bits 0 to i
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

// Between WFINFO_BEGIN_AVX2 and WFINFO_END_AVX2 the compiler uses AVX2, the carry-less product, POPCNT and
// BMI1, which HasAvx2() of cpu.h asks for; between those of AVX512 also AVX-512 with its operations on bytes,
// which HasAvx512() asks for. Standard headers stand before them, so that no function that others share is
// compiled so. Only files named `*_avx2.cpp` and `*_avx512.cpp` use them: there the build sees to it that
// vectors on the stack are moved unaligned.
#if defined(__clang__)
#define WFINFO_BEGIN_AVX2 \
  _Pragma("clang attribute push(__attribute__((target(\"avx2,pclmul,popcnt,bmi\"))), apply_to = function)")
#define WFINFO_END_AVX2 _Pragma("clang attribute pop")
#define WFINFO_BEGIN_AVX512 \
  _Pragma(                  \
      "clang attribute push(__attribute__((target(\"avx512bw,pclmul,popcnt,bmi\"))), apply_to = function)")
#define WFINFO_END_AVX512 WFINFO_END_AVX2
#else
#define WFINFO_BEGIN_AVX2 _Pragma("GCC push_options") _Pragma("GCC target(\"avx2,pclmul,popcnt,bmi\")")
#define WFINFO_END_AVX2 _Pragma("GCC pop_options")
#define WFINFO_BEGIN_AVX512 _Pragma("GCC push_options") _Pragma("GCC target(\"avx512bw,pclmul,popcnt,bmi\")")
#define WFINFO_END_AVX512 WFINFO_END_AVX2
#endif

// What LoadUnchecked and the kernels that call it are declared with.
#define WFINFO_UNCHECKED __attribute__((no_sanitize("address")))

namespace wfinfo::simd {

inline std::size_t CountBitsInSteps(std::uint64_t bits) {
  bits -= (bits >> 1) & 0x5555555555555555u;
  bits = (bits & 0x3333333333333333u) + ((bits >> 2) & 0x3333333333333333u);
  return static_cast<std::size_t>((((bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0Fu) * 0x0101010101010101u) >> 56);
}

inline std::uint64_t PrefixXorInSteps(std::uint64_t bits) {
  for (int shift = 1; shift < 64; shift *= 2) bits ^= bits << shift;
  return bits;
}

// Plain 64-bit words. They are little-endian, as on every processor that runs Windows.
struct Words {
  using Type = std::uint64_t;
  static constexpr std::size_t kWidth = 8;
  static constexpr Type kOnes = 0x0101010101010101u;
  static constexpr Type kTops = 0x8080808080808080u;

  static Type Load(const char* p) {
    Type v;
    std::memcpy(&v, p, sizeof v);
    return v;
  }
  WFINFO_UNCHECKED static Type LoadUnchecked(const char* p) {
    struct __attribute__((packed, may_alias)) Word {
      Type value;
    };
    return reinterpret_cast<const Word*>(p)->value;
  }
  static void Store(char* p, Type v) { std::memcpy(p, &v, sizeof v); }
  static Type Fill(char byte) { return kOnes * static_cast<unsigned char>(byte); }
  static Type Zero() { return 0; }
  static Type SpreadTopBits(Type v) { return ((v & kTops) >> 7) * 0xFF; }
  static Type Equal(Type a, Type b) {
    const Type differs = a ^ b;
    return SpreadTopBits(~(((differs & ~kTops) + ~kTops) | differs));
  }
  static Type Held(Type v) {
    asm("" : "+r"(v));
    return v;
  }
  static Type And(Type a, Type b) { return a & b; }
  static Type AndNot(Type a, Type b) { return ~a & b; }
  static Type Or(Type a, Type b) { return a | b; }
  static Type Xor(Type a, Type b) { return a ^ b; }
  static Type ZeroWhereEither(Type a, Type b) { return AndNot(Equal(a, 0), ~Equal(b, 0)); }
  static bool Any(Type v) { return v != 0; }
  static std::uint32_t Bits(Type v) {
    return static_cast<std::uint32_t>((((v & kTops) >> 7) * 0x0102040810204080u) >> 56);
  }
  static Type Tally(Type sum, Type mask) { return sum + (mask & kOnes); }
  static std::size_t Sum(Type sum) {
    constexpr Type kEven = 0x00FF00FF00FF00FFu;
    const Type pairs = (sum & kEven) + ((sum >> 8) & kEven);
    return static_cast<std::size_t>((pairs * 0x0001000100010001u) >> 48);
  }
  static std::size_t CountBits(std::uint64_t bits) { return CountBitsInSteps(bits); }
  static std::uint64_t PrefixXor(std::uint64_t bits) { return PrefixXorInSteps(bits); }
};

// Every 64-bit x86 processor has SSE2.
struct Sse2 {
  using Type = __m128i;
  static constexpr std::size_t kWidth = 16;

  static Type Load(const char* p) { return _mm_loadu_si128(reinterpret_cast<const Type*>(p)); }
  WFINFO_UNCHECKED static Type LoadUnchecked(const char* p) {
    return _mm_loadu_si128(reinterpret_cast<const Type*>(p));
  }
  static void Store(char* p, Type v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
  static Type Fill(char byte) { return _mm_set1_epi8(byte); }
  static Type Zero() { return _mm_setzero_si128(); }
  static Type SpreadTopBits(Type v) { return _mm_cmplt_epi8(v, Zero()); }
  static Type Equal(Type a, Type b) { return _mm_cmpeq_epi8(a, b); }
  static Type Above(Type a, Type b) { return _mm_cmpgt_epi8(a, b); }
  static Type AtMost(Type a, Type b) { return Equal(_mm_min_epu8(a, b), a); }
  static Type Sub(Type a, Type b) { return _mm_sub_epi8(a, b); }
  static Type Held(Type v) {
    asm("" : "+x"(v));
    return v;
  }
  static Type And(Type a, Type b) { return _mm_and_si128(a, b); }
  static Type AndNot(Type a, Type b) { return _mm_andnot_si128(a, b); }
  static Type Or(Type a, Type b) { return _mm_or_si128(a, b); }
  static Type Xor(Type a, Type b) { return _mm_xor_si128(a, b); }
  static Type ZeroWhereEither(Type a, Type b) { return _mm_min_epu8(a, b); }
  static bool Any(Type v) { return _mm_movemask_epi8(v) != 0; }
  static std::uint32_t Bits(Type v) { return static_cast<std::uint32_t>(_mm_movemask_epi8(v)); }
  static Type Tally(Type sum, Type mask) { return _mm_sub_epi8(sum, mask); }
  static std::size_t Sum(Type sum) {
    const Type halves = _mm_sad_epu8(sum, Zero());
    return static_cast<std::size_t>(
        _mm_cvtsi128_si64(_mm_add_epi64(halves, _mm_unpackhi_epi64(halves, halves))));
  }
  static std::size_t CountBits(std::uint64_t bits) { return CountBitsInSteps(bits); }
  static std::uint64_t PrefixXor(std::uint64_t bits) { return PrefixXorInSteps(bits); }
};

WFINFO_BEGIN_AVX2

struct Avx2 {
  using Type = __m256i;
  static constexpr std::size_t kWidth = 32;

  static Type Load(const char* p) { return _mm256_loadu_si256(reinterpret_cast<const Type*>(p)); }
  WFINFO_UNCHECKED static Type LoadUnchecked(const char* p) {
    return _mm256_loadu_si256(reinterpret_cast<const Type*>(p));
  }
  static void Store(char* p, Type v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
  static Type Fill(char byte) { return _mm256_set1_epi8(byte); }
  static Type Zero() { return _mm256_setzero_si256(); }
  static Type SpreadTopBits(Type v) { return _mm256_cmpgt_epi8(Zero(), v); }
  static Type Equal(Type a, Type b) { return _mm256_cmpeq_epi8(a, b); }
  static Type Above(Type a, Type b) { return _mm256_cmpgt_epi8(a, b); }
  static Type AtMost(Type a, Type b) { return Equal(_mm256_min_epu8(a, b), a); }
  static Type Sub(Type a, Type b) { return _mm256_sub_epi8(a, b); }
  static Type Held(Type v) {
    asm("" : "+x"(v));
    return v;
  }
  static Type And(Type a, Type b) { return _mm256_and_si256(a, b); }
  static Type AndNot(Type a, Type b) { return _mm256_andnot_si256(a, b); }
  static Type Or(Type a, Type b) { return _mm256_or_si256(a, b); }
  static Type Xor(Type a, Type b) { return _mm256_xor_si256(a, b); }
  static Type ZeroWhereEither(Type a, Type b) { return _mm256_min_epu8(a, b); }
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
  static std::size_t CountBits(std::uint64_t bits) {
    return static_cast<std::size_t>(__builtin_popcountll(bits));
  }
  static std::uint64_t PrefixXor(std::uint64_t bits) {
    const __m128i product =
        _mm_clmulepi64_si128(_mm_cvtsi64_si128(static_cast<long long>(bits)), _mm_set1_epi8(-1), 0);
    return static_cast<std::uint64_t>(_mm_cvtsi128_si64(product));
  }
};

WFINFO_END_AVX2

}  // namespace wfinfo::simd
