// Walking comma-separated text line by line and field by field. The syntax stands in csv_kernels.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "src/csv/csv_kernels.h"

namespace wfinfo {

// Where lines start, remembered while a text is walked: not each line, but one at least every 32 lines or 1
// KiB, so that any line is found by a look-up and a short walk. Without memory it remembers less and all
// stays right.
class CsvLineIndex {
 public:
  struct Mark {
    std::uint32_t line;
    std::uint32_t offset;
  };

  // Forgets everything and frees the memory.
  void Clear();
  // Tells of the start of a line; ignored unless it is farther on than all that is known.
  void Note(Mark mark) {
    if (mark.line - last_.line >= kLinesApart || mark.offset - last_.offset >= kBytesApart) Keep(mark);
  }
  // The last known start at or before `line`; {0, 0} when there is none.
  Mark Before(std::uint32_t line) const;

 private:
  static constexpr std::uint32_t kLinesApart = 32;
  static constexpr std::uint32_t kBytesApart = 1024;

  void Keep(Mark mark);

  Mark last_ = {0, 0};
  Mark* marks_ = nullptr;
  std::size_t count_ = 0;
  std::size_t room_ = 0;
};

// A text with a cursor. The text is neither copied nor freed, holds no zero byte, and must not change. What
// the walk remembers (line starts, the fields of the current line, counts) never shows but in the time that
// calls take. Trivially constructed and destroyed: Detach frees.
class CsvText {
 public:
  // Puts the cursor on the first line. `text` has less than 4 GiB.
  void Attach(std::string_view text);
  void Detach();
  bool IsAttached() const { return text_.data() != nullptr; }
  const char* data() const { return text_.data(); }

  // To the next line; false when the text ends there.
  bool SkipLine();
  // To line `line` (0 is the first, less is taken as 0); false, with the cursor at the end, when there is
  // no such.
  bool SetLine(long long line);
  std::size_t LineCount();
  // Fields of the current line.
  std::size_t ColumnCount();
  // Fields of the widest line.
  std::size_t MaxColumnCount();
  // The field as it stands, quotes included; empty when the line has no such.
  std::string_view Field(std::size_t column);
  // Copies a field that Field gave without its quoting, as UnquoteCsvField does. `room` is at least
  // its length.
  std::size_t CopyField(std::string_view field, char* out, std::size_t room) const;
  // Both at once, for a field of less than `room` bytes; gives `room` for a longer one, and nothing
  // is copied.
  std::size_t CopyColumn(std::size_t column, char* out, std::size_t room);

 private:
  static constexpr std::size_t kKeptStarts = 1024;
  static_assert(kKeptStarts <= kCsvStretchRoom);

  std::string_view Rest() const { return text_.substr(cursor_); }
  void MoveTo(std::size_t offset, std::size_t line);
  void Scan();
  void TakeLineOfStretch();
  std::size_t OffsetOf(std::size_t column);
  std::size_t CopyAnyColumn(std::size_t column, char* out, std::size_t room);

  std::string_view text_{};
  const CsvKernels* kernels_ = nullptr;
  std::size_t cursor_ = 0;  // offset of the current line
  std::size_t line_ = 0;    // its number
  bool walks_ = false;      // the line before was looked at too
  bool scanned_ = false;    // what follows speaks of the current line
  CsvLine current_{};
  // Its fields when starts_ has one more, far from the end of the text, and each ends a byte in front of the
  // next; else 0.
  std::size_t quick_fields_ = 0;
  std::size_t base_ = 0;                        // the offset that starts_ counts from
  std::size_t first_ = 0;                       // where in starts_ the current line's fields begin
  std::uint32_t starts_[kCsvStretchRoom] = {};  // of fields, of one line or of several
  std::uint32_t ends_[kCsvStretchRoom] = {};    // where in starts_ those lines end
  std::size_t stretch_ = 0;                     // how many lines that are; 0 when it is one
  std::size_t in_stretch_ = 0;                  // which of them is the current line
  std::size_t far_column_ = 0;                  // the field behind those that was asked for last,
  std::size_t far_offset_ = 0;                  // and where it starts
  std::optional<std::size_t> line_count_;       // nothing until it is asked for
  std::optional<std::size_t> max_columns_;
  CsvLineIndex index_{};
};

// Copies `field` without its quoting and returns the bytes written: an opening quote is dropped, each doubled
// quote becomes one, and a single one (the closing quote, or any quote of a plain field) ends the copy. `out`
// has room for the length of the field.
std::size_t UnquoteCsvField(std::string_view field, char* out);

}  // namespace wfinfo
