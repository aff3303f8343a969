// The headers of a mail, one after the other (RFC 5322), and header and body of a mail, or of one of its
// parts, as they lie in a file. Headers of host text are walked by the same rules; host/mail/headers.h looks
// them up.
#pragma once

#include <string_view>
#include <vector>

#include "host/base/ascii.h"

namespace wrenfold {

// One logical header: `value` begins behind the colon and keeps folds as line ends followed by blanks,
// without the final line end. A line without a colon is all value, with `has_colon` false. Views into the
// raw mail.
struct HeaderField {
  std::string_view name;
  std::string_view value;
  bool has_colon = false;
};

// Where the line ends that a text begins with. FirstLine is the rule of files; host text has its own, since
// the last byte of an escape may be a CR.
using LineRule = LineLength (*)(std::string_view);

// True where a header block ends: at the empty line, or without one at the end.
inline bool HeadersEndAt(std::string_view text) { return text.empty() || IsLineEnd(text[0]); }

// Length of the logical header line that `text` begins with: a line and those after it that begin with
// a blank.
LineLength FirstHeader(std::string_view text, LineRule line = &FirstLine);

// The header of that logical line, which is given without its line end.
HeaderField FieldOf(std::string_view header, LineRule line = &FirstLine);

// Header and body of a message or of one MIME part.
struct MessageParts {
  std::vector<HeaderField> headers;
  std::string_view body;
};

// A mail whose first line is no header line is all body.
MessageParts SplitMessage(std::string_view raw);

// The same for a MIME part, whose header also ends, without an empty line, at a line that is no header
// (unless a "Content-" header follows that one).
MessageParts SplitPart(std::string_view raw);

// Value of the first header `name` (any case), empty when absent.
std::string_view FindHeader(const MessageParts& message, std::string_view name);

}  // namespace wrenfold
