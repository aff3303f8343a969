// The mask routines over a vector type `Vec` of simd.h. Included, inside an unnamed namespace, by one source
// file for each kind of vector unit, which chooses the instruction set; it has no include guard.
#include "src/text/block_kernel.h"

// The bytes that matter in a block, a word each, the lowest bit for the first byte. Each is told by its
// value alone.
struct Marks {
  std::uint64_t quote, backslash, lead, opening, closing, less, greater, separator, control;
};

inline Marks Load(const char* bytes) {
  const Block block = LoadBlock(bytes);
  Marks marks;
  marks.quote = Equal(block, '"');
  marks.backslash = Equal(block, '\\');
  // With bit 5 flipped the lead bytes 81-9F and E0-FC are the one range A1-DC.
  marks.lead = InRange(Flipped(block, 0x20), 0xA1, 0xDC);
  marks.opening = Equal(block, '(');
  marks.closing = Equal(block, ')');
  marks.less = Equal(block, '<');
  marks.greater = Equal(block, '>');
  marks.separator = Equal(block, ',') | Equal(block, ';');
  marks.control = InRange(block, 0, 0x1F);
  return marks;
}

// The bits before the lowest one of `bits`, or all when there is none.
inline std::uint64_t BitsBefore(std::uint64_t bits) { return (bits & (~bits + 1)) - 1; }

// The bytes that a lead byte or a backslash takes with it: every second byte of a run of these, and the one
// behind it. Subtracting carries each run's start through the run; the odd bits tell which half of the run
// is meant.
inline std::uint64_t TakenBytes(std::uint64_t takes_next) {
  constexpr std::uint64_t kOdd = 0xAAAAAAAAAAAAAAAA;
  const std::uint64_t behind = takes_next << 1;
  return (((behind | kOdd) - takes_next) ^ kOdd) ^ takes_next;
}

inline bool Understand(const Marks& marks, QuickAddress* entry) {
  const std::uint64_t taken = TakenBytes(marks.lead | marks.backslash);
  const std::uint64_t free = ~taken;
  const std::uint64_t backslash = marks.backslash & free;
  const std::uint64_t quote = marks.quote & free;
  const std::uint64_t opening = marks.opening & free;
  const std::uint64_t closing = marks.closing & free;
  const std::uint64_t quoted = Vec::PrefixXor(quote);
  const std::uint64_t comment = Vec::PrefixXor(opening | closing);
  const std::uint64_t outside = ~(quoted | comment);

  const std::uint64_t before = BitsBefore(marks.separator & free & outside);
  const std::uint64_t quote_opens = quote & quoted;
  const std::uint64_t unclear = marks.control | (quote & comment) | ((opening | closing) & quoted) |
                                (opening & ~comment) | (closing & comment) |
                                // A run of quotes, bare or with backslashes.
                                (quote_opens << 1 & (marks.quote | (marks.backslash & marks.quote >> 1))) |
                                // A backslash means different things in front of a lead byte and of " (".
                                (backslash << 1 & marks.lead) | (backslash << 2 & marks.opening);
  const std::uint64_t less = marks.less & free & outside & before;
  const std::uint64_t greater = marks.greater & free & outside & before;
  // One "<" with its ">" as the last byte, or neither.
  const std::uint64_t end = before + 1;
  const bool bracket = greater == end >> 1 && less != 0 && (less & (less - 1)) == 0;
  if ((unclear & before) != 0 || end == 0 || !(bracket || (less | greater) == 0)) return false;
  entry->end = static_cast<std::uint32_t>(__builtin_ctzll(end));
  entry->open = static_cast<std::uint32_t>(__builtin_ctzll(less | end));
  entry->close = static_cast<std::uint32_t>(__builtin_ctzll(greater | end));
  return true;
}

inline bool ScanHere(std::string_view text, QuickAddress* entry) {
  if (text.size() >= kBlock) return text[0] != '\'' && Understand(Load(text.data()), entry);
  // Filled up with separators; one that the last byte takes with it shows in the length.
  char block[kBlock];
  std::memset(block, ',', sizeof block);
  std::memcpy(block, text.data(), text.size());
  return block[0] != '\'' && Understand(Load(block), entry) && entry->end <= text.size();
}

bool Scan(std::string_view text, QuickAddress* entry) { return ScanHere(text, entry); }

std::size_t Count(std::string_view list, std::size_t* at) {
  std::size_t count = 0;
  for (;; ++count) {
    const std::size_t begin = SkipAddressBlanks(list, *at);
    QuickAddress entry;
    if (begin >= list.size() || !ScanHere(list.substr(begin), &entry)) return count;
    const std::size_t end = begin + entry.end;
    *at = end + (end < list.size() ? 1 : 0);
  }
}
