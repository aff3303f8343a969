// Validation of UTF-8 in SSE2: 64 bytes at a time, each class of bytes as one word of 64 bits. ASCII counts
// as above any other byte, since bytes are compared as signed numbers.
#include <cstring>

#include "src/text/simd.h"
#include "src/text/utf8_validation_sets.h"

namespace wfinfo {
namespace {

using Vec = simd::Sse2;

#include "src/text/block_kernel.h"

// What the bytes of earlier blocks ask of the next ones, the lowest bit for the first of them.
struct Expected {
  std::uint64_t trails = 0;  // these must be trail bytes
  std::uint64_t after_e0 = 0, after_ed = 0, after_f0 = 0, after_f4 = 0;
  bool Any() const { return trails != 0; }
};

// Checks a block; false when something is wrong in it.
bool CheckBlock(const Block& block, std::uint64_t high, Expected& expected) {
  const std::uint64_t lead = Above(block, 0xBF) & high;
  const std::uint64_t lead3 = Above(block, 0xDF) & high;  // announces at least two trail bytes
  const std::uint64_t lead4 = Above(block, 0xEF) & high;
  const std::uint64_t e0 = Equal(block, 0xE0), ed = Equal(block, 0xED);
  const std::uint64_t f0 = Equal(block, 0xF0), f4 = Equal(block, 0xF4);
  const std::uint64_t never = Equal(block, 0xC0) | Equal(block, 0xC1) | (Above(block, 0xF4) & high);
  const std::uint64_t trails = lead << 1 | lead3 << 2 | lead4 << 3 | expected.trails;
  const std::uint64_t from_a0 = Above(block, 0x9F), from_90 = Above(block, 0x8F);
  const std::uint64_t wrong_second =
      ((e0 << 1 | expected.after_e0) & ~from_a0) | ((ed << 1 | expected.after_ed) & from_a0) |
      ((f0 << 1 | expected.after_f0) & ~from_90) | ((f4 << 1 | expected.after_f4) & from_90);
  expected = {lead >> 63 | lead3 >> 62 | lead4 >> 61, e0 >> 63, ed >> 63, f0 >> 63, f4 >> 63};
  return ((trails ^ (high & ~lead)) | never | wrong_second) == 0;
}

bool ValidateBlocks(std::string_view text) {
  Expected expected;
  for (std::size_t at = 0; at < text.size(); at += kBlock) {
    alignas(16) char tail[kBlock] = {};
    const char* bytes = text.data() + at;
    if (text.size() - at < kBlock) {
      std::memcpy(tail, bytes, text.size() - at);
      bytes = tail;
    }
    const Block block = LoadBlock(bytes);
    const std::uint64_t high = TopBits(block);
    if (high == 0 && !expected.Any()) continue;
    if (!CheckBlock(block, high, expected)) return false;
  }
  return !expected.Any();
}

}  // namespace

const Utf8Validator kSse2Utf8Validator = {"SSE2", ValidateBlocks};

}  // namespace wfinfo
