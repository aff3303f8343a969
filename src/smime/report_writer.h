// Building the S/MIME reports: bounded text, the marks of their lines, and names that come from certificates.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <string_view>

namespace wfinfo::smime {

// The mark at the start of a finding (code page 932): good, not settled, problem. A report that holds the
// last one makes a certificate unusable for signing and encrypting.
inline constexpr char kGoodMark[] = "\x81\x9B";     // white circle
inline constexpr char kUnsureMark[] = "\x81\xA2";   // white triangle
inline constexpr char kProblemMark[] = "\x81\x7E";  // multiplication sign

// True when `mark` stands in `text` as a character of its own; two bytes that merely look like it, the second
// half of one character and the first of the next, do not count.
bool HoldsMark(std::string_view text, std::string_view mark);

// A zero-terminated text growing in a buffer of `room` bytes (at least 1). What does not fit is cut in front
// of a character; nothing is added after that.
class ReportWriter {
 public:
  ReportWriter(char* buffer, std::size_t room);

  void Add(std::string_view text);
  // printf-style, of which it knows %s, %u and %X with a width that zeroes fill ("%04u"), and %%. Every %s
  // must be host text.
  void AddFormat(const char* format, ...);
  void AddFormatList(std::string_view format, std::va_list arguments);

  const char* text() const { return buffer_; }
  std::string_view view() const { return {buffer_, used_}; }

 private:
  void AddNumber(unsigned number, unsigned base, std::size_t width);
  void EndAt(std::size_t used);

  char* buffer_;
  std::size_t room_;
  std::size_t used_ = 0;
  bool full_ = false;
};

// Makes a name of a certificate fit for a report line, in place: control characters are dropped, so that it
// cannot begin a line of its own, and a mark becomes "?", so that it cannot pass for a finding. `was_cut`
// says that the name filled its buffer: half a character at its end is dropped then.
void CleanName(char* name, bool was_cut);

// One line of the certification path, the root at depth 0: "  " for each level and one more, and the name. A
// name that could not be had (empty) gives `unknown` without indentation.
void AddPathLine(ReportWriter& report, std::string_view name, std::size_t depth, std::string_view unknown);

}  // namespace wfinfo::smime
