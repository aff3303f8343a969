// The block routines over a vector type `Vec` of simd.h. Included, inside an unnamed namespace, by one source
// file for each kind of vector unit, which chooses the instruction set; it has no include guard.
//
// The running exclusive or of the quotes tells what is quoted, provided that each opening quote stands where
// one may: at the start of a field or right behind a closing quote (then both are a doubled quote). A block
// in which one stands elsewhere is "irregular" and is walked byte by byte.
#include "src/text/block_kernel.h"

using csv::Carry;

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
  block.field_starts =
      ((after_separator & ~ends) | (after_close & ~(marks.quote | marks.comma | ends))) & valid;
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

std::size_t CountLines(std::string_view text) {
  Carry carry;
  std::size_t lines = 0;
  bool open = false;  // the text read so far does not end with a line end
  for (std::size_t at = 0; at < text.size(); at += kBlock) {
    const std::size_t left = text.size() - at;
    const char* const bytes = text.data() + at;
    if (left >= kBlock && (Equal(LoadBlock(bytes), '"') | carry.quoted) == 0) {
      const Block plain = LoadBlock(bytes);
      const std::uint64_t cr = Equal(plain, '\r'), lf = Equal(plain, '\n');
      const std::uint64_t ends = cr | lf;
      lines += Vec::CountBits(ends & ~(lf & (cr << 1 | carry.after_cr)));
      carry = {0, 0, (ends >> 63) | (bytes[kBlock - 1] == ','), cr >> 63};
      open = ends >> 63 == 0;
      continue;
    }
    const Marks marks = LoadUpTo(bytes, left);
    const std::uint64_t after_cr = marks.cr << 1 | carry.after_cr;
    const Structure block = Understand(marks, carry, ~std::uint64_t{0});
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

// Appends the positions of the bits of a block at `at` to the `fields` known so far, as far as there is room.
inline void WriteStarts(std::uint64_t bits, std::size_t at, std::span<std::uint32_t> starts,
                        std::size_t& fields) {
  constexpr std::size_t kAtOnce = 4;
  const std::size_t count = Vec::CountBits(bits);
  const std::size_t first = fields;
  fields += count;
  const auto next = [&bits, at] {
    // Without a bit left the value is of no use, and nobody uses it.
    const auto position = static_cast<std::uint32_t>(at + static_cast<std::size_t>(std::countr_zero(bits)));
    bits &= bits - 1;
    return position;
  };
  if (first + count + kAtOnce <= starts.size()) {
    std::uint32_t* out = starts.data() + first;
    while (bits != 0) {
      for (std::size_t i = 0; i < kAtOnce; ++i) *out++ = next();
    }
    return;
  }
  for (std::size_t index = first; bits != 0 && index < starts.size(); ++index) starts[index] = next();
}

// One line; with `kWithStarts` also where its fields begin. An irregular line is walked byte by byte.
template <bool kWithStarts>
CsvLine Line(std::string_view text, std::span<std::uint32_t> starts) {
  Carry carry;
  CsvLine line{text.data() + text.size(), nullptr, 0};
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
