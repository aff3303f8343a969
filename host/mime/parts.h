// The tree of a mail's MIME parts, flattened to what is shown and what is attached.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/mime/message.h"

namespace wrenfold {

struct PartText {
  std::u16string text;  // line ends as in the mail
  bool was_html = false;
};

struct PartContent {
  std::optional<PartText> text;
  std::vector<Attachment> attachments;
};

// Reads a whole message, headers included.
PartContent ReadMessage(const MessageParts& message, const Charsets& charsets);

// The parts of a multipart body: what stands between the delimiter lines "--boundary"; the end delimiter may
// be missing. Preamble and epilogue are dropped. Empty when there is no delimiter at all.
std::vector<std::string_view> SplitMultipart(std::string_view body, std::string_view boundary);

}  // namespace wrenfold
