// A mail as it lies in a file (RFC 5322, MIME) to what the host shows of it: decoded headers, one text body,
// attachments. Malformed mail is read as far as it goes; nothing here throws for it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/charset/charsets.h"

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

// A value with parameters: Content-Type, Content-Disposition.
struct ParameterizedValue {
  std::string value;  // lower case, printable ASCII, without comments
  std::vector<std::pair<std::string, std::u16string>> parameters;  // names in lower case; RFC 2231 resolved
};

ParameterizedValue ParseParameters(std::string_view text, const Charsets& charsets);
const std::u16string* FindParameter(const ParameterizedValue& parsed, std::string_view name);

// A header value with its RFC 2047 words decoded. Folds stay, as CR LF and the blanks behind them, except
// between two adjacent words. `declared` is the charset to try for raw 8-bit text. With `is_address_list` a
// decoded word that would change the list's structure (a comma in a name) is put in quotes.
std::u16string DecodeHeaderValue(std::string_view value, std::string_view declared, bool is_address_list,
                                 const Charsets& charsets);

struct Attachment {
  std::string file_name;     // host text, never empty, without folders
  std::string content_type;  // "image/png"
  std::string bytes;         // decoded content

  bool operator==(const Attachment&) const = default;
};

// What the host holds of a mail.
struct HostMessage {
  std::string text;             // raw host text: headers, empty line, body; CR LF line ends, no zero bytes
  std::size_t body_offset = 0;  // of the body in `text`
  std::vector<Attachment> attachments;
  bool body_was_html = false;  // the mail has no plain text: `text` holds the HTML part without its tags
};

HostMessage MakeHostMessage(std::string_view raw, const Charsets& charsets = SystemCharsets());

}  // namespace wrenfold
