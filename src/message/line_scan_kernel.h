// The kernels of line_scan.h over a vector type `Vec` of simd.h. Included, inside an anonymous namespace, by
// one source file for each kind of vector unit; it has no include guard and includes nothing, so that the
// including file chooses the instruction set for all that stands here.
//
// Vectors are read past the end of texts, though never into another page.
#include "src/message/line_count_kernel.h"

using V = Vec::Type;
constexpr std::size_t kPage = 4096;  // the smallest page there is
constexpr std::size_t kUnroll = kCounted / kWidth;
constexpr int kRounds = 16;  // rounds until the byte sums are emptied: at most 8 * 16 < 256 each

// In the bytes from `p` on: 0x80 set where the three bytes before could be the first three of an escape.
WFINFO_UNCHECKED inline V EscapeHeads(const char* p) {
  const V first = Vec::Equal(Vec::LoadUnchecked(p - 3), Vec::Fill(kEscapeByte));
  return Vec::And(first, Vec::And(Vec::LoadUnchecked(p - 2), Vec::LoadUnchecked(p - 1)));
}

// Gives the candidates of one vector to the search, lowest first. True when the search ended.
template <class Search>
WFINFO_UNCHECKED inline bool VisitBits(Search& search, const char* p, std::uint32_t bits) {
  for (; bits != 0; bits &= bits - 1) {
    if (search.Visit(p + __builtin_ctz(bits))) return true;
  }
  return false;
}

// Drives a search from `from` on: Visit(p) looks at position p exactly and is called with rising p, at least
// for every p in Candidates(p) (a bit for each byte of a vector), until it returns true, which it must do at
// the terminator. The first kLookBack positions are always visited, so that Candidates may look back. Stops
// at `until` (aligned to a vector, at least kLookBack + kWidth behind the start; null: never) and returns
// false then.
template <class Search>
WFINFO_UNCHECKED bool Walk(Search& search, const char* from, const char* until = nullptr) {
  const char* p = from;
  for (; p != from + kLookBack; ++p) {
    if (search.Visit(p)) return true;
  }
  if (Offset(p, kPage) <= kPage - kWidth) {
    const std::size_t step = kWidth - Offset(p, kWidth);  // the rest belongs to the next, aligned vector
    const auto kept = static_cast<std::uint32_t>((std::uint64_t{1} << step) - 1);
    if (VisitBits(search, p, search.Candidates(p) & kept)) return true;
    p += step;
  }
  for (; Offset(p, kWidth) != 0; ++p) {
    if (search.Visit(p)) return true;
  }
  while (p != until) {
    const std::uint32_t bits = search.Candidates(p);
    if (bits != 0 && VisitBits(search, p, bits)) return true;
    p += kWidth;
  }
  return false;
}

// The first line end or the terminator.
struct EndSearch {
  const char* text;
  const char* found = nullptr;

  WFINFO_UNCHECKED bool Visit(const char* p) {
    const char byte = *p;
    if (byte != '\0' && byte != '\n' && (byte != '\r' || EndsEscape(text, p))) return false;
    found = p;
    return true;
  }

  WFINFO_UNCHECKED std::uint32_t Candidates(const char* p) const {
    const V v = Vec::LoadUnchecked(p);
    const V ends = Vec::Or(Vec::Equal(v, Vec::Fill('\r')), Vec::Equal(v, Vec::Fill('\n')));
    return Vec::Bits(Vec::Or(ends, Vec::Equal(v, Vec::Fill('\0'))));
  }
};

WFINFO_UNCHECKED const char* FindLineEnd(const char* text) {
  EndSearch search{text};
  Walk(search, text);
  return search.found;
}

// Counts line ends: at the LF, or for a lone CR at the byte behind it. Ends at the terminator, or once
// `wanted` line ends were seen; `at` is then the start of the next line.
struct LineSearch {
  const char* text;
  std::size_t wanted;
  std::size_t ends = 0;
  const char* at = nullptr;

  WFINFO_UNCHECKED bool Visit(const char* p) {
    if (*p == '\n') {
      ++ends;
      at = p + 1;
    } else {
      at = p;
      if (FollowsLoneCr(text, p)) ++ends;
    }
    return ends == wanted || *p == '\0';
  }

  WFINFO_UNCHECKED std::uint32_t Candidates(const char* p) const {
    const V v = Vec::LoadUnchecked(p);
    const V lf = Vec::Equal(v, Vec::Fill('\n'));
    const V after_cr = Vec::Equal(Vec::LoadUnchecked(p - 1), Vec::Fill('\r'));
    return Vec::Bits(Vec::Or(Vec::Or(lf, after_cr), Vec::Equal(v, Vec::Fill('\0'))));
  }
};

// One round of the counting loop. False, with nothing counted, when the terminator lies in it.
WFINFO_UNCHECKED inline bool CountBlock(const char* p, V& sum) {
  V lf[kUnroll];
  V lone[kUnroll];
  V any_lone, least;  // zero where one of the vectors is
  for (std::size_t i = 0; i < kUnroll; ++i) {
    const V v = Vec::Held(Vec::LoadUnchecked(p + i * kWidth));
    const V after_cr = Vec::Equal(Vec::LoadUnchecked(p + i * kWidth - 1), Vec::Fill('\r'));
    lf[i] = Vec::Equal(v, Vec::Fill('\n'));
    lone[i] = Vec::AndNot(lf[i], after_cr);
    least = i == 0 ? v : Vec::ZeroWhereEither(least, v);
    any_lone = i == 0 ? lone[i] : Vec::Or(any_lone, lone[i]);
  }
  const V zero = Vec::Equal(least, Vec::Zero());
  // Both are rare in most texts: one question for the two.
  if (Vec::Any(Vec::Or(zero, any_lone))) {
    if (Vec::Any(zero)) return false;
    for (std::size_t i = 0; i < kUnroll; ++i) {
      // The CR before a byte belongs to an escape when the three bytes before that CR begin one.
      sum = Vec::Tally(sum, Vec::AndNot(Vec::SpreadTopBits(EscapeHeads(p + i * kWidth - 1)), lone[i]));
    }
  }
  for (std::size_t i = 0; i < kUnroll; ++i) sum = Vec::Tally(sum, lf[i]);
  return true;
}

// Counts in blocks from the aligned `p` on, until one holds the terminator or a run of blocks would reach
// `wanted` line ends; returns where it stopped and adds what lies before that to `ends`.
WFINFO_UNCHECKED const char* CountBlocks(const char* p, std::size_t& ends, std::size_t wanted) {
  for (;;) {
    V sum = Vec::Zero();
    const char* const run = p;
    int round = 0;
    while (round < kRounds && CountBlock(p, sum)) {
      p += kCounted;
      ++round;
    }
    const std::size_t counted = Vec::Sum(sum);
    if (ends + counted >= wanted) return run;
    ends += counted;
    if (round < kRounds) return p;
  }
}

WFINFO_UNCHECKED const char* CountBlocks(const char* p, std::size_t& ends) {
  return CountBlocks(p, ends, static_cast<std::size_t>(-1));
}

// Counts up to `wanted` line ends in `search`.
WFINFO_UNCHECKED void CountInto(LineSearch& search) {
  // Blocks are aligned to their size, which divides a page, and stand far enough behind the start to
  // look back.
  const char* const from = search.text + kWidth + kLookBack;
  const char* const first_block = from + (kCounted - Offset(from, kCounted));
  if (Walk(search, search.text, first_block)) return;
  Walk(search, CountBlocks(first_block, search.ends, search.wanted));
}

WFINFO_UNCHECKED inline std::uint64_t PlacesOf(char byte, const char* p) {
  std::uint64_t places = 0;
  for (std::size_t i = 0; i < kStep; i += kWidth)
    places |= std::uint64_t{Vec::Bits(Vec::Equal(Vec::LoadUnchecked(p + i), Vec::Fill(byte)))} << i;
  return places;
}

WFINFO_UNCHECKED const char* SkipLines(const char* text, std::size_t count) {
  if (count == 0) return text;
  LineSearch search{text, count};
  CountInto(search);
  return search.ends == count ? search.at : nullptr;
}

struct HeaderSearch : HeaderLines {
  const char* seen = nullptr;  // the last position examined
  V first = Vec::Fill(prefix.empty() ? '\0' : LowerAscii(prefix[0]));
  V case_bit = Vec::Fill(!prefix.empty() && IsLetter(prefix[0]) ? kAsciiCaseBit : '\0');

  WFINFO_UNCHECKED bool Visit(const char* p) {
    if (p != text && p - 1 != seen && Examine(p - 1)) return true;
    seen = p;
    return Examine(p);
  }

  // A line after LF shows one byte late, when its first byte is CR or the one looked for. A line after a
  // lone CR, a LF without CR and so an empty line of one LF show at once: there "LF here" differs from
  // "CR before".
  WFINFO_UNCHECKED std::uint32_t Candidates(const char* p) const {
    const V v = Vec::LoadUnchecked(p);
    const V before = Vec::LoadUnchecked(p - 1);
    const V line_begins = Vec::Equal(Vec::LoadUnchecked(p - 2), Vec::Fill('\n'));
    const V after_cr = Vec::Equal(before, Vec::Fill('\r'));
    const V is_first = Vec::Equal(Vec::Or(before, case_bit), first);
    const V odd = Vec::Xor(Vec::Equal(v, Vec::Fill('\n')), after_cr);
    const V regular = Vec::And(line_begins, Vec::Or(is_first, after_cr));
    return Vec::Bits(Vec::Or(Vec::Or(odd, regular), Vec::Equal(v, Vec::Fill('\0'))));
  }
};

WFINFO_UNCHECKED HeaderHit FindHeader(const char* text, std::string_view prefix, std::size_t index) {
  HeaderSearch search{{text, prefix, index}};
  Walk(search, text);
  return search.hit;
}
