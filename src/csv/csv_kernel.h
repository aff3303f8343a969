// The block routines over a vector type `Vec` of simd.h. Included, inside an unnamed namespace, by one source
// file for each kind of vector unit, which chooses the instruction set; it has no include guard.
//
// The running exclusive or of the quotes tells what is quoted, provided that each opening quote stands where
// one may: at the start of a field or right behind a closing quote (then both are a doubled quote). A block
// in which one stands elsewhere is "irregular" and is walked byte by byte.
#include "src/text/block_kernel.h"

using csv::Carry;
using V = Vec::Type;

// The characters that matter in a block, a word each, the lowest bit for the first byte.
struct Marks {
  std::uint64_t quote, comma, cr, lf;
};

inline Marks Load(const char* bytes) {
  const Block block = LoadBlock(bytes);
  return {Equal(block, '"'), Equal(block, ','), Equal(block, '\r'), Equal(block, '\n')};
}

// What a block holds once its quotes are understood. Bits behind the end of the text are clear, except
// in `quoted`.
struct Structure {
  std::uint64_t quoted;      // from the opening quote on, the closing one excluded
  std::uint64_t closers;     // closing quotes, also the first of a doubled one
  std::uint64_t separators;  // commas and line ends outside quotes
  std::uint64_t line_ends;   // CR and LF outside quotes
  std::uint64_t irregular;   // opening quotes where none may stand
  std::uint64_t field_starts;
  std::uint64_t touching;  // those right behind a closing quote
};

inline Structure Understand(const Marks& marks, const Carry& carry, std::uint64_t valid) {
  Structure block;
  const std::uint64_t ends = marks.cr | marks.lf;
  block.quoted = (marks.quote == 0 ? 0 : Vec::PrefixXor(marks.quote)) ^ carry.quoted;
  block.closers = marks.quote & ~block.quoted;
  block.separators = (marks.comma | ends) & ~block.quoted;
  block.line_ends = ends & ~block.quoted;
  const std::uint64_t after_separator = block.separators << 1 | carry.field_start;
  const std::uint64_t after_close = block.closers << 1 | carry.after_close;
  block.irregular = marks.quote & block.quoted & ~(after_separator | after_close);
  block.touching = after_close & ~(marks.quote | marks.comma | ends) & valid;
  block.field_starts = (after_separator & ~ends & valid) | block.touching;
  return block;
}

inline Carry CarryOut(const Marks& marks, const Structure& block) {
  return {block.quoted >> 63 != 0 ? ~std::uint64_t{0} : 0, block.closers >> 63, block.separators >> 63,
          (marks.cr & block.line_ends) >> 63};
}

// The marks of the last bytes of a text, fewer than 64.
inline Marks LoadTail(const char* bytes, std::size_t length) {
  alignas(64) char block[kBlock] = {};
  std::memcpy(block, bytes, length);
  return Load(block);
}

inline Marks LoadUpTo(const char* at, std::size_t left) {
  return left >= kBlock ? Load(at) : LoadTail(at, left);
}

// Counts the line ends of the bytes from `at` on up to one quote or the end of the text, in rounds of
// kPlainRound bytes, the last of which it leaves behind `at`. What ends lines is counted one byte late: a LF,
// or what stands behind a CR. The byte in front of `at`, which is no quoted one, is counted already.
constexpr std::size_t kPlainRound = 128;
constexpr int kPlainRounds = 16;  // until the byte sums are emptied: at most 8 * 16 < 256 each
inline std::size_t CountPlainLines(std::string_view text, std::size_t& at) {
  const std::size_t first = at;
  std::size_t lines = 0;
  for (bool plain = true; plain && text.size() - at >= kPlainRound;) {
    V sum = Vec::Zero();
    for (int round = 0; round < kPlainRounds && text.size() - at >= kPlainRound; ++round) {
      V quotes = Vec::Zero(), round_sum = sum;
      for (std::size_t i = 0; i < kPlainRound; i += Vec::kWidth) {
        const V here = Vec::Load(text.data() + at + i);
        const V after_cr = Vec::Equal(Vec::Load(text.data() + at + i - 1), Vec::Fill('\r'));
        quotes = Vec::Or(quotes, Vec::Equal(here, Vec::Fill('"')));
        round_sum = Vec::Tally(round_sum, Vec::Or(Vec::Equal(here, Vec::Fill('\n')), after_cr));
      }
      plain = !Vec::Any(quotes);
      if (!plain) break;
      sum = round_sum;
      at += kPlainRound;
    }
    lines += Vec::Sum(sum);
  }
  if (at == first) return 0;
  return lines - (text[first - 1] == '\r' ? 1 : 0) + (text[at - 1] == '\r' ? 1 : 0);
}

std::size_t CountLines(std::string_view text) {
  Carry carry;
  std::size_t lines = 0;
  bool open = false;   // the text read so far does not end with a line end
  bool plain = false;  // the block read last has no quote, and is no part of a quoted field
  for (std::size_t at = 0; at < text.size(); at += kBlock) {
    if (plain) {
      const std::size_t first = at;
      lines += CountPlainLines(text, at);
      if (at != first) {
        const char last = text[at - 1];
        open = last != '\r' && last != '\n';
        carry = {0, 0, !open || last == ',', last == '\r'};
      }
      if (at == text.size()) break;
    }
    const std::size_t left = text.size() - at;
    const char* const bytes = text.data() + at;
    const Marks marks = LoadUpTo(bytes, left);
    const std::uint64_t after_cr = marks.cr << 1 | carry.after_cr;
    const Structure block = Understand(marks, carry, ~std::uint64_t{0});
    plain = (marks.quote | carry.quoted) == 0;
    if (block.irregular != 0) {
      const std::size_t length = std::min(left, kBlock);
      lines += csv::CountLinesByByte(text.substr(at, length), carry);
      open = (carry.field_start == 0) || text[at + length - 1] == ',';
      continue;
    }
    lines += Vec::CountBits(block.line_ends & ~(marks.lf & after_cr));
    carry = CarryOut(marks, block);
    if (left <= kBlock) open = (block.line_ends >> (left - 1) & 1) == 0;
  }
  return lines + (open ? 1 : 0);
}

std::size_t WidestLine(std::string_view text) {
  Carry carry;
  std::size_t fields = 0;  // of the current line so far
  std::size_t widest = 0;
  for (std::size_t at = 0; at < text.size(); at += kBlock) {
    const std::size_t left = text.size() - at;
    const Marks marks = LoadUpTo(text.data() + at, left);
    const std::uint64_t valid = left >= kBlock ? ~std::uint64_t{0} : (std::uint64_t{1} << left) - 1;
    const Structure block = Understand(marks, carry, valid);
    if (block.irregular != 0) {
      csv::WidestByByte(text.substr(at, kBlock), carry, fields, widest);
      continue;
    }
    std::uint64_t starts = block.field_starts;
    for (std::uint64_t ends = block.line_ends; ends != 0; ends &= ends - 1) {
      const std::uint64_t before = (ends & (~ends + 1)) - 1;
      widest = std::max(widest, fields + Vec::CountBits(starts & before));
      starts &= ~before;
      fields = 0;
    }
    fields += Vec::CountBits(starts);
    carry = CarryOut(marks, block);
  }
  return std::max(widest, fields);
}

// Writes the positions of the bits of a block at `at`, some at a time: behind the last there is room for
// kAtOnce more, which mean nothing.
constexpr std::size_t kAtOnce = 4;
inline void WriteAll(std::uint64_t bits, std::size_t at, std::uint32_t* out) {
  do {
    for (std::size_t i = 0; i < kAtOnce; ++i) {
      // Without a bit left the value is of no use, and nobody uses it.
      *out++ = static_cast<std::uint32_t>(at + static_cast<std::size_t>(std::countr_zero(bits)));
      bits &= bits - 1;
    }
  } while (bits != 0);
}

// Appends the positions to the `fields` known so far, as far as there is room.
inline void WriteStarts(std::uint64_t bits, std::size_t at, std::span<std::uint32_t> starts,
                        std::size_t& fields) {
  const std::size_t count = Vec::CountBits(bits);
  const std::size_t first = fields;
  fields += count;
  if (first + count + kAtOnce <= starts.size()) return WriteAll(bits, at, starts.data() + first);
  for (std::size_t index = first; bits != 0 && index < starts.size(); ++index, bits &= bits - 1)
    starts[index] = static_cast<std::uint32_t>(at + static_cast<std::size_t>(std::countr_zero(bits)));
}

std::size_t Lines(std::string_view text, std::uint32_t* starts, std::uint32_t* ends) {
  Carry carry;
  std::size_t known = 1;
  std::size_t lines = 0;
  starts[0] = 0;
  for (std::size_t at = 0; at < kCsvStretch && text.size() - at >= kBlock; at += kBlock) {
    const Marks marks = Load(text.data() + at);
    const Structure block = Understand(marks, carry, ~std::uint64_t{0});
    if ((block.irregular | block.touching) != 0) break;
    const std::uint64_t after_cr = marks.cr << 1 | carry.after_cr;
    std::uint64_t line_ends = block.line_ends & ~(marks.lf & after_cr);
    std::uint32_t* out = ends + lines;
    lines += Vec::CountBits(line_ends);
    do {
      for (std::size_t i = 0; i < 2; ++i, line_ends &= line_ends - 1) {
        const std::uint64_t before = (line_ends & (~line_ends + 1)) - 1;
        *out++ = static_cast<std::uint32_t>(known + Vec::CountBits(block.separators & before));
      }
    } while (line_ends != 0);
    WriteAll(block.separators, at + 1, starts + known);
    known += Vec::CountBits(block.separators);
    carry = CarryOut(marks, block);
  }
  return lines;
}

// One line; with `kWithStarts` also where its fields begin. An irregular line is walked byte by byte.
template <bool kWithStarts>
CsvLine Line(std::string_view text, std::span<std::uint32_t> starts) {
  Carry carry;
  CsvLine line{text.data() + text.size(), nullptr, 0, false};
  for (std::size_t at = 0; at < text.size(); at += kBlock) {
    const std::size_t left = text.size() - at;
    const Marks marks = LoadUpTo(text.data() + at, left);
    const std::uint64_t valid = left >= kBlock ? ~std::uint64_t{0} : (std::uint64_t{1} << left) - 1;
    const Structure block = Understand(marks, carry, valid);
    // All bits before the first line end, or all when there is none.
    const std::uint64_t before = (block.line_ends & (~block.line_ends + 1)) - 1;
    if ((block.irregular & before) != 0) return csv::LineByByte(text, starts);
    if constexpr (kWithStarts) {
      WriteStarts(block.field_starts & before, at, starts, line.fields);
      line.touching |= (block.touching & before) != 0;
    }
    if (block.line_ends == 0 && left > kBlock) {
      carry = CarryOut(marks, block);
      continue;
    }
    const std::size_t end =
        block.line_ends != 0 ? static_cast<std::size_t>(std::countr_zero(block.line_ends)) : left;
    line.end = text.data() + at + end;
    const std::uint64_t commas = (block.separators & ~block.line_ends) << 1 | carry.field_start;
    const bool comma_before = end == kBlock ? block.separators >> 63 != 0 : (commas >> end & 1) != 0;
    line.last_field_end = line.end - (comma_before && line.end != text.data() ? 1 : 0);
    return line;
  }
  line.last_field_end = line.end;
  return line;
}

const char* LineEnd(std::string_view text) { return Line<false>(text, {}).end; }
