#include "src/csv/csv_kernels.h"

#include <immintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>

#include "src/csv/csv_state.h"
#include "src/text/cpu.h"

namespace wfinfo {
namespace {

using csv::Carry;
using csv::IsLineEnd;
using csv::Step;
using csv::StepOver;

constexpr std::size_t kBlock = 64;

// The characters that matter in a block, a word each, the lowest bit for the first byte.
struct Marks {
  std::uint64_t quote, comma, cr, lf;
};

struct LineEnds {
  std::uint64_t cr, lf;
};

// --- Byte by byte: the rule, and what irregular blocks fall back on ----------------------------------------

// Line ends in `text`, a CR LF once.
std::size_t CountLinesByByte(std::string_view text, Carry& carry) {
  std::size_t lines = 0;
  for (const char byte : text) {
    const bool after_cr = carry.after_cr != 0;
    const Step step = StepOver(carry, byte);
    lines += step.ends_line && !(byte == '\n' && after_cr);
  }
  return lines;
}

void WidestByByte(std::string_view text, Carry& carry, std::size_t& fields, std::size_t& widest) {
  for (const char byte : text) {
    const Step step = StepOver(carry, byte);
    fields += step.starts_field;
    widest = std::max(widest, fields);
    if (step.ends_line) fields = 0;
  }
}

CsvLine LineByByte(std::string_view text, std::span<std::uint32_t> starts) {
  Carry carry;
  CsvLine line{text.data(), nullptr, 0};
  std::size_t at = 0;
  bool comma = false;  // the byte before is a comma between fields
  for (; at < text.size(); ++at) {
    const bool after_comma = at > 0 && carry.field_start != 0;
    const Step step = StepOver(carry, text[at]);
    if (step.ends_line) {
      comma = after_comma;
      break;
    }
    if (step.starts_field && line.fields < starts.size())
      starts[line.fields] = static_cast<std::uint32_t>(at);
    line.fields += step.starts_field;
    comma = carry.field_start != 0;
  }
  line.end = text.data() + at;
  line.last_field_end = line.end - (comma ? 1 : 0);
  return line;
}

std::size_t CountAllByByte(std::string_view text) {
  Carry carry;
  const std::size_t ended = CountLinesByByte(text, carry);
  const bool open = !text.empty() && (carry.field_start == 0 || text.back() == ',');
  return ended + (open ? 1 : 0);
}

std::size_t WidestOfAllByByte(std::string_view text) {
  Carry carry;
  std::size_t fields = 0;
  std::size_t widest = 0;
  WidestByByte(text, carry, fields, widest);
  return widest;
}

const char* LineEndByByte(std::string_view text) { return LineByByte(text, {}).end; }

// --- SSE2: every processor of this architecture ------------------------------------------------------------

namespace sse2 {

#define WFINFO_TARGET

inline std::uint64_t EqualBits(const __m128i (&part)[4], char byte) {
  const __m128i wanted = _mm_set1_epi8(byte);
  std::uint64_t bits = 0;
  for (int i = 3; i >= 0; --i) {
    bits = bits << 16 | static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(part[i], wanted)));
  }
  return bits;
}

struct Parts {
  explicit Parts(const char* bytes) {
    for (int i = 0; i < 4; ++i) part[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes) + i);
  }
  __m128i part[4];
};

inline Marks Load(const char* bytes) {
  const auto [part] = Parts(bytes);
  return {EqualBits(part, '"'), EqualBits(part, ','), EqualBits(part, '\r'), EqualBits(part, '\n')};
}

inline LineEnds LoadLineEnds(const char* bytes) {
  const auto [part] = Parts(bytes);
  return {EqualBits(part, '\r'), EqualBits(part, '\n')};
}

inline std::uint64_t QuoteBits(const char* bytes) { return EqualBits(Parts(bytes).part, '"'); }

inline std::uint64_t PrefixXor(std::uint64_t bits) {
  for (int shift = 1; shift < 64; shift *= 2) bits ^= bits << shift;
  return bits;
}

inline std::size_t Count(std::uint64_t bits) { return static_cast<std::size_t>(std::popcount(bits)); }

#include "src/csv/csv_kernel.h"

#undef WFINFO_TARGET

}  // namespace sse2

// --- AVX2 with the carry-less product and the bit instructions that come with it ---------------------------

namespace avx2 {

#define WFINFO_TARGET __attribute__((target("avx2,pclmul,popcnt,bmi")))

WFINFO_TARGET inline std::uint64_t EqualBits(__m256i low, __m256i high, char byte) {
  const __m256i wanted = _mm256_set1_epi8(byte);
  const auto bits = [](int mask) { return static_cast<std::uint64_t>(static_cast<unsigned>(mask)); };
  return bits(_mm256_movemask_epi8(_mm256_cmpeq_epi8(low, wanted))) |
         bits(_mm256_movemask_epi8(_mm256_cmpeq_epi8(high, wanted))) << 32;
}

WFINFO_TARGET inline __m256i Half(const char* bytes) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
}

WFINFO_TARGET inline LineEnds LoadLineEnds(const char* bytes) {
  const __m256i low = Half(bytes);
  const __m256i high = Half(bytes + 32);
  return {EqualBits(low, high, '\r'), EqualBits(low, high, '\n')};
}

WFINFO_TARGET inline std::uint64_t QuoteBits(const char* bytes) {
  return EqualBits(Half(bytes), Half(bytes + 32), '"');
}

WFINFO_TARGET inline Marks Load(const char* bytes) {
  const __m256i low = Half(bytes);
  const __m256i high = Half(bytes + 32);
  return {EqualBits(low, high, '"'), EqualBits(low, high, ','), EqualBits(low, high, '\r'),
          EqualBits(low, high, '\n')};
}

WFINFO_TARGET inline std::uint64_t PrefixXor(std::uint64_t bits) {
  const __m128i product =
      _mm_clmulepi64_si128(_mm_cvtsi64_si128(static_cast<long long>(bits)), _mm_set1_epi8(-1), 0);
  return static_cast<std::uint64_t>(_mm_cvtsi128_si64(product));
}

WFINFO_TARGET inline std::size_t Count(std::uint64_t bits) {
  return static_cast<std::size_t>(__builtin_popcountll(bits));
}

#include "src/csv/csv_kernel.h"

#undef WFINFO_TARGET

}  // namespace avx2

// Slowest first.
constexpr CsvKernels kKernels[] = {
    {"bytes", &CountAllByByte, &WidestOfAllByByte, &LineByByte, &LineEndByByte},
    {"sse2", &sse2::CountLines, &sse2::WidestLine, &sse2::Line<true>, &sse2::LineEnd},
    {"avx2", &avx2::CountLines, &avx2::WidestLine, &avx2::Line<true>, &avx2::LineEnd},
};

}  // namespace

std::span<const CsvKernels> RunnableCsvKernels() { return RunnableOf(kKernels); }

const CsvKernels& BestCsvKernels() { return RunnableCsvKernels().back(); }

}  // namespace wfinfo
