// Comma-separated text, looked at in blocks of 64 bytes.
//
//   text  = { line }                   each but perhaps the last ended by CR LF, CR or LF
//   line  = { field [","] }            "a,b," has two fields; an empty line has none
//   field = plain | '"' quoted '"'     plain: up to a comma, CR, LF or the end; quotes in it are ordinary
//   quoted: anything, '""' for a quote; without a closing quote it runs to the end of the text
//
// What stands behind a closing quote and is no comma starts a field of its own: "a"b,c has three fields. All
// is byte-based: the second byte of a double-byte character is none of these characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace wfinfo {

// One line, seen from its first byte.
struct CsvLine {
  const char* end;             // its CR, LF or the end of the text
  const char* last_field_end;  // end of its last field: `end`, or the comma right before it
  std::size_t fields;
  bool touching;  // a field may begin right behind a closing quote, without a comma
};

// The bytes that scan_lines looks at, and what it may write in both lists.
inline constexpr std::size_t kCsvStretch = 1024;
inline constexpr std::size_t kCsvStretchRoom = kCsvStretch + 16;

// One set of routines. No text may hold a zero byte; all stay within the given bytes.
struct CsvKernels {
  const char* name;
  // Number of lines; 0 for an empty text.
  std::size_t (*count_lines)(std::string_view text);
  // Greatest number of fields in a line.
  std::size_t (*widest_line)(std::string_view text);
  // The line that `text` begins with; `starts` takes the offsets of its first fields, as many as it has
  // room for.
  CsvLine (*scan_line)(std::string_view text, std::span<std::uint32_t> starts);
  // As many whole lines as `text` begins with and this set understands at once, maybe none; gives how many.
  // `starts` takes the offset of the text, 0, and then, for each comma and line end outside quotes, of the
  // byte behind it (a CR and its LF have one each); `ends[i]` is which of them stands behind the first byte
  // of the end of line i. In such lines every field ends at a comma or line end.
  std::size_t (*scan_lines)(std::string_view text, std::uint32_t* starts, std::uint32_t* ends);
  // Only the end of that line.
  const char* (*line_end)(std::string_view text);
};

// The fastest set that this processor runs.
const CsvKernels& BestCsvKernels();

// All sets that this processor runs, slowest first: the first is the byte loop.
std::span<const CsvKernels* const> RunnableCsvKernels();

}  // namespace wfinfo
