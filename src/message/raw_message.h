// Raw message text: the whole of a mail as the host hands it over, header and body.
//
//   Subject: a folded            a logical header line: a line and those after it
//     value                        that begin with a space or a tab
//   From: ...
//                                the header ends at the first line that begins with CR or LF
//   body line 0
//   body line 1
//
// Text is zero-terminated host text; where lines end is told in line_scan.h. The views point into the text.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace wfinfo {

// The name of a header as it is looked for: at most 253 characters of it and a colon, which is added unless
// the name has it already.
class HeaderName {
 public:
  explicit HeaderName(std::string_view name);
  std::string_view view() const { return {text_, length_}; }

 private:
  static constexpr std::size_t kLongest = 253;
  char text_[kLongest + 1];
  std::size_t length_;
};

// The value of occurrence `index` (0 = first) of a header: what follows the colon, spaces and tabs up to the
// end of the logical line, with the line breaks inside it.
std::optional<std::string_view> HeaderValue(const char* text, const HeaderName& name, std::size_t index);

// How often a header occurs.
std::size_t CountHeaders(const char* text, const HeaderName& name);

// Where the body begins: behind the empty line, or at the terminator.
const char* BodyStart(const char* text);

// Everything before the body, the empty line included.
std::string_view HeaderBlock(const char* text);

// `text` without one CR LF at its end, if it has one (whose CR ends no escape).
std::string_view WithoutFinalLineEnd(std::string_view text);

// Physical line `index` (0 = first) of the body, without its line end.
std::optional<std::string_view> BodyLineAt(const char* text, std::size_t index);

// Number of physical lines of the body.
std::size_t CountBodyLines(const char* text);

// Clears bit 7 of the fourth byte of every escape in `text`, which has `length` bytes.
void ClearEscapeMarks(char* text, std::size_t length);

}  // namespace wfinfo
