#include "src/text/simd.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "src/text/cpu.h"

namespace wfinfo {
namespace {

// What the operations tell of a block of 64 bytes, a bit for each.
struct Findings {
  std::uint64_t top, equal, in_range, above, flipped;
  bool operator==(const Findings&) const = default;
};

constexpr int kByte = 0x5C, kFirst = 0xA1, kLast = 0xDC, kFlip = 0x20;

Findings Slow(const char* bytes) {
  Findings found{};
  for (int i = 0; i < 64; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    const auto bit = [i](bool set) { return std::uint64_t{set} << i; };
    found.top |= bit(byte >= 0x80);
    found.equal |= bit(byte == kByte);
    found.in_range |= bit(byte >= kFirst && byte <= kLast);
    found.above |= bit(static_cast<signed char>(byte) > static_cast<signed char>(kLast - 256));
    found.flipped |= bit((byte ^ kFlip) >= kFirst && (byte ^ kFlip) <= kLast);
  }
  return found;
}

#define FIND_IN_BLOCKS                                                                               \
  Findings Find(const char* bytes) {                                                                 \
    const Block block = LoadBlock(bytes);                                                            \
    return {TopBits(block), Equal(block, kByte), InRange(block, kFirst, kLast), Above(block, kLast), \
            InRange(Flipped(block, kFlip), kFirst, kLast)};                                          \
  }                                                                                                  \
  std::uint64_t Prefix(std::uint64_t bits) { return Vec::PrefixXor(bits); }                          \
  std::size_t Count(std::uint64_t bits) { return Vec::CountBits(bits); }                             \
  std::uint64_t Zeros(const char* a, const char* b) {                                                \
    Block least = LoadBlock(a);                                                                      \
    const Block other = LoadBlock(b);                                                                \
    for (std::size_t i = 0; i < kBlock / Vec::kWidth; ++i)                                           \
      least.part[i] = Vec::ZeroWhereEither(Vec::Held(least.part[i]), other.part[i]);                 \
    return Equal(least, 0);                                                                          \
  }

namespace sse2 {
using Vec = simd::Sse2;
#include "src/text/block_kernel.h"
FIND_IN_BLOCKS
}  // namespace sse2

WFINFO_BEGIN_AVX2
namespace avx2 {
using Vec = simd::Avx2;
#include "src/text/block_kernel.h"
FIND_IN_BLOCKS
}  // namespace avx2
WFINFO_END_AVX2

struct Unit {
  const char* name;
  Findings (*find)(const char* bytes);
  std::uint64_t (*prefix)(std::uint64_t bits);
  std::size_t (*count)(std::uint64_t bits);
  std::uint64_t (*zeros)(const char* a, const char* b);
};

constexpr Unit kUnits[] = {{"SSE2", sse2::Find, sse2::Prefix, sse2::Count, sse2::Zeros},
                           {"AVX2", avx2::Find, avx2::Prefix, avx2::Count, avx2::Zeros}};

TEST(SimdBlocks, EveryUnitFindsTheSameAsALoopOverTheBytes) {
  std::mt19937 random(11);
  for (int round = 0; round < 2000; ++round) {
    std::vector<char> bytes(64);
    constexpr int kBorders[] = {kByte, kFirst - 1, kFirst, kLast, kLast + 1, 0x7F, 0x80, 0xFF, 0x00};
    for (char& byte : bytes) {
      byte = static_cast<char>(random() % 2 == 0 ? static_cast<int>(random() % 256)
                                                 : kBorders[random() % std::size(kBorders)]);
    }
    for (const Unit& unit : RunnableOf(kUnits))
      ASSERT_EQ(unit.find(bytes.data()), Slow(bytes.data())) << unit.name;
  }
}

TEST(SimdBlocks, AByteIsZeroWhereOneOfTheTwoIs) {
  using simd::Words;
  std::mt19937 random(13);
  for (int round = 0; round < 2000; ++round) {
    std::vector<char> a(64), b(64);
    std::uint64_t zeros = 0;
    for (std::size_t i = 0; i < 64; ++i) {
      a[i] = "\0\x01\x7F\x80\xFF"[random() % 5];
      b[i] = "\0\x01\x7F\x80\xFF"[random() % 5];
      zeros |= std::uint64_t{a[i] == 0 || b[i] == 0} << i;
    }
    for (const Unit& unit : RunnableOf(kUnits)) ASSERT_EQ(unit.zeros(a.data(), b.data()), zeros) << unit.name;
    for (std::size_t i = 0; i < 64; i += Words::kWidth) {
      const auto both = Words::ZeroWhereEither(Words::Load(&a[i]), Words::Held(Words::Load(&b[i])));
      ASSERT_EQ(Words::Bits(Words::Equal(both, Words::Zero())), zeros >> i & 0xFF);
    }
  }
}

TEST(SimdWords, PrefixXorAndCountAreThoseOfALoopOverTheBits) {
  std::mt19937_64 random(12);
  for (int round = 0; round < 2000; ++round) {
    const std::uint64_t word = round == 0 ? 0 : round == 1 ? ~std::uint64_t{0} : random() & random();
    std::uint64_t prefix = 0;
    std::size_t count = 0;
    for (int i = 0; i < 64; ++i) {
      count += word >> i & 1;
      prefix |= static_cast<std::uint64_t>(count % 2) << i;
    }
    ASSERT_EQ(simd::Words::PrefixXor(word), prefix);
    ASSERT_EQ(simd::Words::CountBits(word), count);
    for (const Unit& unit : RunnableOf(kUnits)) {
      ASSERT_EQ(unit.prefix(word), prefix) << unit.name;
      ASSERT_EQ(unit.count(word), count) << unit.name;
    }
  }
}

}  // namespace
}  // namespace wfinfo
