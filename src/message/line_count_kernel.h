// The count of all line ends, over PlacesOf and CountBlocks, which the including file defines for its kind of
// vector unit: `Vec` is that unit, or what of it is asked here. Included as line_scan_kernel.h is.
#include "src/message/line_bytes_kernel.h"

constexpr std::size_t kWidth = Vec::kWidth;
constexpr std::size_t kLookBack = 4;  // bytes before a position that a search may look at
constexpr std::size_t kStep = 64;     // bytes that are looked at as one word of bits
constexpr std::size_t kCounted =
    4 * kWidth < kStep ? kStep : 4 * kWidth;  // bytes of a round of the counting loop

// Where bytes of a value stand among the 64 from the aligned `p` on.
std::uint64_t PlacesOf(char byte, const char* p);

// Counts in blocks of kCounted from the aligned `p` on, which lies kLookBack or more behind the start of the
// text, until one holds the terminator; returns where it stopped and adds what lies before that to `ends`.
const char* CountBlocks(const char* p, std::size_t& ends);

// Counts the line ends among the `valid` ones of the 64 bytes from the aligned `p` on. True when the
// terminator is one of them: `tally.end` is then there. No branch depends on where lines end, which short
// texts cannot be foreseen by.
WFINFO_UNCHECKED inline bool CountStep(const char* text, const char* p, std::uint64_t valid,
                                       LineTally& tally) {
  const std::uint64_t zero = PlacesOf('\0', p) & valid;
  if (zero != 0) {
    valid &= zero ^ (zero - 1);
    tally.end = p + __builtin_ctzll(zero);
  }
  const std::uint64_t lf = PlacesOf('\n', p), cr = PlacesOf('\r', p) & valid;
  const std::uint64_t after_cr = cr << 1 | (p > text && p[-1] == '\r' ? 1 : 0);
  tally.ends += Vec::CountBits(lf & valid);
  for (std::uint64_t lone = after_cr & ~lf & valid; lone != 0; lone &= lone - 1)
    tally.ends += EndsEscape(text, p + __builtin_ctzll(lone) - 1) ? 0 : 1;
  return zero != 0;
}

WFINFO_UNCHECKED LineTally CountEnds(const char* text) {
  constexpr std::uint64_t kAll = ~std::uint64_t{0};
  LineTally tally{0, nullptr};
  const char* p = text - Offset(text, kStep);
  if (CountStep(text, p, kAll << Offset(text, kStep), tally)) return tally;
  // Blocks are aligned to their size and look back as far as an escape and its CR reach.
  for (p += kStep; p < text + kLookBack || Offset(p, kCounted) != 0; p += kStep) {
    if (CountStep(text, p, kAll, tally)) return tally;
  }
  p = CountBlocks(p, tally.ends);
  while (!CountStep(text, p, kAll, tally)) p += kStep;
  return tally;
}
