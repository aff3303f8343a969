// The tree of a mail's MIME parts, flattened to what is shown and what is attached.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/mime/message.h"
#include "host/mime/sections.h"

namespace wrenfold {

struct PartText {
  std::u16string text;  // line ends as in the mail
  bool was_html = false;
};

// A text that is attached since it has a name, though it is not marked as an attachment.
struct NamedText {
  PartText text;
  std::size_t attachment = 0;  // its index
};

struct PartContent {
  std::optional<PartText> text;
  std::optional<NamedText> named;  // the first one; of plain text rather than HTML
  std::vector<Attachment> attachments;
};

// Reads a whole message, headers included.
PartContent ReadMessage(const MessageParts& message, const Charsets& charsets);

// The charset that raw 8-bit headers are likely in: that of the mail's text or, in a multipart, of the first
// text part that names one of eight bits; else any that is named. Empty for none.
std::string CharsetOfTexts(const MessageParts& message, const Charsets& charsets);

// The parts of a multipart body: what stands between the delimiter lines "--boundary"; the end delimiter may
// be missing. Preamble and epilogue are dropped. Empty when there is no delimiter at all.
std::vector<std::string_view> SplitMultipart(std::string_view body, std::string_view boundary);

}  // namespace wrenfold
