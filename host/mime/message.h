// A mail as it lies in a file (RFC 5322, MIME) to what the host shows of it: decoded headers, one text body,
// attachments. Malformed mail is read as far as it goes; nothing here throws for it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/charset/charsets.h"

namespace wrenfold {

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

// The headers of its text and the empty line behind them, without its parts: what lists and sorting need.
std::string MakeHostHeader(std::string_view raw, const Charsets& charsets = SystemCharsets());

HostMessage MakeHostMessage(std::string_view raw, const Charsets& charsets = SystemCharsets());

}  // namespace wrenfold
