#include "src/text/long_text.h"

#include <cstdint>

#include "src/text/simd.h"

namespace wfinfo {

namespace {

using Vec = simd::Sse2;

#include "src/text/block_kernel.h"

bool BlocksAreSame(const char* a, const char* b) {
  const Block one = LoadBlock(a), other = LoadBlock(b);
  Vec::Type differs = Vec::Zero();
  for (std::size_t i = 0; i < kBlock / Vec::kWidth; ++i)
    differs = Vec::Or(differs, Vec::Xor(one.part[i], other.part[i]));
  return Vec::Bits(Vec::Equal(differs, Vec::Zero())) == 0xFFFF;
}

}  // namespace

std::size_t LengthWithin(const char* text, std::size_t limit) {
  std::size_t at = 0;
  for (; limit - at >= kBlock; at += kBlock) {
    const std::uint64_t zeros = Equal(LoadBlock(text + at), 0);
    if (zeros != 0) return at + static_cast<std::size_t>(__builtin_ctzll(zeros));
  }
  while (at < limit && text[at] != '\0') ++at;
  return at;
}

bool AreSame(const char* a, const char* b, std::size_t size) {
  std::size_t at = 0;
  for (; size - at >= kBlock; at += kBlock) {
    if (!BlocksAreSame(a + at, b + at)) return false;
  }
  while (at < size && a[at] == b[at]) ++at;
  return at == size;
}

}  // namespace wfinfo
