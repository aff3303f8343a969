// Reading the headers and the body of a mail's host text, as the host itself looks them up; header_edit.h
// changes them. Line ends are CR LF.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/mime/sections.h"

namespace wrenfold {

// A mail in three views, which together are the whole text.
struct MailText {
  std::string_view headers;     // with their line ends
  std::string_view empty_line;  // "" when there is none: then all is header
  std::string_view body;
};
MailText SplitMail(std::string_view text);

// One header of a text.
struct TextHeader {
  std::size_t at;
  std::string_view lines;  // its line and the folded lines behind it, with their line ends
  HeaderField field;

  // In any case of letters; `name` without a colon. A line without a colon has no name.
  bool Is(std::string_view name) const;
  // From the first character behind colon and blanks to the end of the last line, without its line end.
  std::string_view Value() const;
};

// The header that begins at `at`; nullopt at the empty line and at the end.
std::optional<TextHeader> FieldAt(std::string_view text, std::size_t at);

// Occurrence `n` (from 0) of header `name`, in any case, with or without its colon.
std::optional<TextHeader> FindField(std::string_view text, std::string_view name, std::size_t n);

std::string_view WithoutColon(std::string_view name);

// The value of that header; nullopt when there is none.
std::optional<std::string_view> HeaderValue(std::string_view text, std::string_view name, std::size_t n = 0);

// A value, host text, as one line: line ends go, tabs become blanks.
std::string Unfolded(std::string_view value);

std::size_t CountHeaders(std::string_view text, std::string_view name);

// The headers that a reader shows above a mail: From, To, Cc, Subject and Date as "Name: value" lines, each
// with its line end; the absent ones are left out.
std::string DisplayedHeaders(std::string_view text);

}  // namespace wrenfold
