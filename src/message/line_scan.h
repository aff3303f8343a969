// The walk over the lines of raw message text: where lines end, how many there are, where a header stands.
//
// Text is zero-terminated host text. A line ends at CR LF, a lone CR or a lone LF. The fourth byte of an
// escape can be 0x0D (never 0x0A) and is no line end then; since 0x1A occurs nowhere else inside an escape,
// whether a CR belongs to one is a local test of the three bytes before it.
//
// There is one set of kernels for each kind of vector unit; Lines() gives the fastest that this processor
// runs. They read the text in vectors and may read past its terminator, but never into another page.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace wfinfo {

// The line ends that the folding functions write.
enum class LineEnd { kCrLf, kCrCrLf };

struct LineTally {
  std::size_t ends;  // line ends counted
  const char* end;   // the terminator
};

struct HeaderHit {
  const char* line;        // the header line found, null when there is none
  std::size_t matches;     // header lines that matched before it
  const char* header_end;  // without a hit: the empty line or the terminator
};

// What a rewriting of all line ends will write.
struct FoldSize {
  std::size_t output;  // bytes to be written
  std::size_t input;   // length of the text
  std::size_t right;   // leading bytes that are whole lines with the right line end already
};

struct LineKernels {
  const char* name;

  // The first CR, LF or terminator at or after `text`.
  const char* (*find_line_end)(const char* text);

  // Counts the line ends up to the terminator.
  LineTally (*count_ends)(const char* text);

  // Steps over `count` lines: the start of the next one (maybe the terminator), null when there are fewer
  // line ends.
  const char* (*skip_lines)(const char* text, std::size_t count);

  // The occurrence `index` (0 = first) of a header line that begins with `prefix`; ASCII letters of either
  // case are equal. Lines that continue another (they begin with a blank) do not count. An empty prefix
  // matches nothing.
  HeaderHit (*find_header)(const char* text, std::string_view prefix, std::size_t index);

  // Measures what write_folded will write for `text`.
  FoldSize (*measure_folded)(const char* text, LineEnd form);

  // Writes the lines of [from, end) to `out`, which has room until `out_end`, and returns the end of what it
  // wrote. `from` is the start of a line in the text that begins at `text` and has its
  // terminator at `end`.
  char* (*write_folded)(const char* text, const char* from, const char* end, char* out, char* out_end,
                        LineEnd form);
};

// The kernels for this processor.
const LineKernels& Lines();

// All kernels that this processor runs, slowest first.
std::span<const LineKernels* const> RunnableLineKernels();

}  // namespace wfinfo
