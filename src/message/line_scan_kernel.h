// The kernels of line_scan.h over a vector type `Vec` of simd.h. Included, inside an anonymous namespace, by
// one source file for each kind of vector unit; it has no include guard and includes nothing, so that the
// including file chooses the instruction set for all that stands here.
//
// Vectors are read past the end of texts, though never into another page.

using V = Vec::Type;
constexpr std::size_t kWidth = Vec::kWidth;
constexpr std::size_t kPage = 4096;   // the smallest page there is
constexpr std::size_t kLookBack = 4;  // bytes before a position that a search may look at
constexpr std::size_t kStep = 64;     // bytes that are looked at as one word of bits
constexpr std::size_t kCounted =
    4 * kWidth < kStep ? kStep : 4 * kWidth;  // bytes of a round of the counting loop
constexpr std::size_t kUnroll = kCounted / kWidth;
constexpr int kRounds = 16;  // rounds until the byte sums are emptied: at most 8 * 16 < 256 each

inline std::size_t Offset(const char* p, std::size_t unit) {
  return reinterpret_cast<std::uintptr_t>(p) & (unit - 1);
}

// A CR at `p` that is the fourth byte of an escape. `text`: nothing before it counts.
WFINFO_UNCHECKED inline bool EndsEscape(const char* text, const char* p) {
  return p - text >= 3 && p[-3] == kEscapeByte && IsEscapeTail(p[-2], p[-1], *p);
}

// True when a lone CR stands in front of `p`: `p` begins a line for that reason.
WFINFO_UNCHECKED inline bool FollowsLoneCr(const char* text, const char* p) {
  return p != text && p[-1] == '\r' && *p != '\n' && !EndsEscape(text, p - 1);
}

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

// Counts up to `wanted` line ends in `search`.
WFINFO_UNCHECKED void CountInto(LineSearch& search) {
  // Blocks are aligned to their size, which divides a page, and stand far enough behind the start to
  // look back.
  const char* const from = search.text + kWidth + kLookBack;
  const char* const first_block = from + (kCounted - Offset(from, kCounted));
  if (Walk(search, search.text, first_block)) return;
  Walk(search, CountBlocks(first_block, search.ends, search.wanted));
}

// Where bytes of a value stand among the 64 from the aligned `p` on.
WFINFO_UNCHECKED inline std::uint64_t PlacesOf(char byte, const char* p) {
  std::uint64_t places = 0;
  for (std::size_t i = 0; i < kStep; i += kWidth)
    places |= std::uint64_t{Vec::Bits(Vec::Equal(Vec::LoadUnchecked(p + i), Vec::Fill(byte)))} << i;
  return places;
}

// Counts the line ends among the `valid` ones of the 64 bytes from the aligned `p` on. True when the
// terminator is one of them: `at` is then there. No branch depends on where lines end, which short texts
// cannot be foreseen by.
WFINFO_UNCHECKED inline bool CountStep(const char* p, std::uint64_t valid, LineSearch& search) {
  const std::uint64_t zero = PlacesOf('\0', p) & valid;
  if (zero != 0) {
    valid &= zero ^ (zero - 1);
    search.at = p + __builtin_ctzll(zero);
  }
  const std::uint64_t lf = PlacesOf('\n', p), cr = PlacesOf('\r', p) & valid;
  const std::uint64_t after_cr = cr << 1 | (p > search.text && p[-1] == '\r' ? 1 : 0);
  search.ends += Vec::CountBits(lf & valid);
  for (std::uint64_t lone = after_cr & ~lf & valid; lone != 0; lone &= lone - 1)
    search.ends += EndsEscape(search.text, p + __builtin_ctzll(lone) - 1) ? 0 : 1;
  return zero != 0;
}

WFINFO_UNCHECKED LineTally CountEnds(const char* text) {
  LineSearch search{text, static_cast<std::size_t>(-1)};
  const char* p = text - Offset(text, kStep);
  if (CountStep(p, ~std::uint64_t{0} << Offset(text, kStep), search)) return {search.ends, search.at};
  // Blocks are aligned to their size and look back as far as an escape and its CR reach.
  for (p += kStep; p < text + kLookBack || Offset(p, kCounted) != 0; p += kStep) {
    if (CountStep(p, ~std::uint64_t{0}, search)) return {search.ends, search.at};
  }
  p = CountBlocks(p, search.ends, search.wanted);
  while (!CountStep(p, ~std::uint64_t{0}, search)) p += kStep;
  return {search.ends, search.at};
}

WFINFO_UNCHECKED const char* SkipLines(const char* text, std::size_t count) {
  if (count == 0) return text;
  LineSearch search{text, count};
  CountInto(search);
  return search.ends == count ? search.at : nullptr;
}

// Header lines that begin with a prefix, up to the empty line.
struct HeaderSearch {
  const char* text;
  std::string_view prefix;
  std::size_t index;
  HeaderHit hit{nullptr, 0, nullptr};
  const char* seen = nullptr;  // the last position examined
  V first = Vec::Fill(prefix.empty() ? '\0' : LowerAscii(prefix[0]));
  V case_bit = Vec::Fill(!prefix.empty() && IsLetter(prefix[0]) ? kAsciiCaseBit : '\0');

  WFINFO_UNCHECKED bool Matches(const char* line) const {
    for (std::size_t i = 0; i < prefix.size(); ++i) {
      if (line[i] != prefix[i] && LowerAscii(line[i]) != LowerAscii(prefix[i])) return false;
    }
    return !prefix.empty();
  }

  WFINFO_UNCHECKED bool EndsAt(const char* p) {
    hit.header_end = p;
    return true;
  }

  // Looks at `p` as the start of a line, if it is one.
  WFINFO_UNCHECKED bool Examine(const char* p) {
    seen = p;
    const char byte = *p;
    if (byte == '\0') return EndsAt(p);
    if (p != text && p[-1] != '\n' && !FollowsLoneCr(text, p)) return false;
    if (IsLineEnd(byte)) return EndsAt(p);
    if (p != text && IsBlank(byte)) return false;  // continues the line before
    if (!Matches(p)) return false;
    if (hit.matches == index) {
      hit.line = p;
      return true;
    }
    ++hit.matches;
    return false;
  }

  WFINFO_UNCHECKED bool Visit(const char* p) {
    if (p != text && p - 1 != seen && Examine(p - 1)) return true;
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
  HeaderSearch search{text, prefix, index};
  Walk(search, text);
  return search.hit;
}
