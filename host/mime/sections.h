// Header and body of a mail or of one of its parts, as they lie in a file (RFC 5322).
#pragma once

#include <string_view>
#include <vector>

namespace wrenfold {

// One logical header: `value` begins behind the colon and keeps folds as line ends followed by blanks,
// without the final line end. A line without a colon is all name, with `has_colon` false. Views into the
// raw mail.
struct HeaderField {
  std::string_view name;
  std::string_view value;
  bool has_colon = false;
};

// Header and body of a message or of one MIME part.
struct MessageParts {
  std::vector<HeaderField> headers;
  std::string_view body;
};

MessageParts SplitMessage(std::string_view raw);

// The same for a MIME part, whose header also ends, without an empty line, at a line that is no header
// (unless a "Content-" header follows that one).
MessageParts SplitPart(std::string_view raw);

// Value of the first header `name` (any case), empty when absent.
std::string_view FindHeader(const MessageParts& message, std::string_view name);

}  // namespace wrenfold
