#include "src/text/unit_blocks.h"

#include <cstring>

#include "src/text/host_text.h"
#include "src/text/simd.h"

namespace wfinfo {

namespace {

using Vec = simd::Sse2;

#include "src/text/block_kernel.h"

static_assert(kBlock == kUnitBlock);

// The bytes that lead bytes take with them: of a run of these every second one, and the one behind an odd
// run. Adding carries each run's start through the run. `overflow` becomes 1 when the last byte takes one of
// the next block.
std::uint64_t TakenByLeads(std::uint64_t leads, std::uint64_t* overflow) {
  constexpr std::uint64_t kEven = 0x5555555555555555;
  const std::uint64_t behind = leads << 1;
  const std::uint64_t odd_starts = leads & ~kEven & ~behind;
  std::uint64_t runs = 0;
  *overflow = __builtin_add_overflow(odd_starts, leads, &runs) ? 1 : 0;
  return (kEven ^ (runs << 1)) & behind;
}

// Where the fourth byte of an escape may stand.
std::uint64_t EscapeEnds(const Block& block) {
  Block hit;
  for (std::size_t i = 0; i < kBlock / Vec::kWidth; ++i)
    hit.part[i] = Vec::Equal(Vec::And(block.part[i], Vec::Fill(0x74)), Vec::Fill(0x04));
  return TopBits(hit);
}

// Where a 0x1A stands with the tail of an escape behind it.
std::uint64_t EscapeBegins(const char* bytes, std::uint64_t escape_bytes) {
  const std::uint64_t second = TopBits(LoadBlock(bytes + 1)), third = TopBits(LoadBlock(bytes + 2));
  return escape_bytes & second & third & EscapeEnds(LoadBlock(bytes + 3));
}

std::uint64_t InsideUnits(const char* bytes, std::uint64_t* carried) {
  const Block block = LoadBlock(bytes);
  const std::uint64_t high = TopBits(block), escape_bytes = Equal(block, kEscapeByte);
  const std::uint64_t before = *carried;
  if ((high | escape_bytes) == 0) {
    *carried = 0;
    return before;
  }
  const std::uint64_t begins = escape_bytes == 0 ? 0 : EscapeBegins(bytes, escape_bytes) & ~before;
  const std::uint64_t tails = begins << 1 | begins << 2 | begins << 3 | before;
  // With bit 5 flipped the lead bytes 81-9F and E0-FC are the one range A1-DC.
  const std::uint64_t leads = InRange(Flipped(block, 0x20), 0xA1, 0xDC) & ~tails;
  std::uint64_t overflow = 0;
  const std::uint64_t taken = TakenByLeads(leads, &overflow);
  // A lead byte has taken the 0x1A, so that there is no escape and its bytes mean something else.
  if ((taken & begins) != 0) return InsideUnitsByWalk(bytes, carried);
  *carried = overflow | begins >> 63 | begins >> 62 | begins >> 61;
  return taken | tails;
}

}  // namespace

std::uint64_t InsideUnitsByWalk(const char* bytes, std::uint64_t* carried) {
  constexpr std::size_t kKnown = kUnitBlock + kUnitsAhead;
  std::uint64_t inside = *carried;
  std::size_t at = 0;
  while ((*carried >> at & 1) != 0) ++at;
  while (at < kUnitBlock) {
    const std::size_t begin = at;
    at += UnitLength({bytes + begin, kKnown - begin});
    for (std::size_t i = begin + 1; i < at && i < kUnitBlock; ++i) inside |= std::uint64_t{1} << i;
  }
  *carried = (std::uint64_t{1} << (at - kUnitBlock)) - 1;
  return inside;
}

bool UnitBlocks::Next() {
  at_ += length_;
  const std::size_t left = text_.size() - at_;
  if (left == 0) return false;
  length_ = left < kUnitBlock ? left : kUnitBlock;
  bytes_ = text_.data() + at_;
  if (left < sizeof padded_) {
    std::memcpy(padded_, bytes_, left);
    std::memset(padded_ + left, 0, sizeof padded_ - left);
    bytes_ = padded_;
  }
  inside_ = InsideUnits(bytes_, &carried_);
  return true;
}

}  // namespace wfinfo
