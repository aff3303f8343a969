#include "host/mime/message.h"

#include <algorithm>

#include "host/base/ascii.h"
#include "host/mime/address_headers.h"
#include "host/mime/header_words.h"
#include "host/mime/parts.h"
#include "host/mime/sections.h"

namespace wrenfold {
namespace {

// Header names are printable ASCII; anything else in one is "?", so that a name never ends the line.
std::u16string SafeName(std::string_view name) {
  std::u16string safe;
  for (const char c : name) {
    const bool printable = (c >= ' ' && c <= '~') || c == '\t';
    safe += printable ? static_cast<char16_t>(c) : u'?';
  }
  return safe;
}

std::u16string DecodeField(const HeaderField& field, std::string_view declared, const Charsets& charsets) {
  std::u16string value =
      DecodeHeaderValue(field.value, declared, field.has_colon && IsAddressHeader(field.name), charsets);
  if (field.has_colon) return SafeName(field.name) + u':' + value;
  // A line without a colon must not become the empty line that ends the header, nor the last
  // header's continuation.
  const bool was_blank = IsBlank(field.value[0]);
  const bool lost =
      value.empty() || value[0] == u'\r' || (!was_blank && (value[0] == u' ' || value[0] == u'\t'));
  return lost ? u'?' + value : value;
}

// CR LF for every kind of line end, a blank for each zero.
std::u16string WithHostLineEnds(std::u16string_view text) {
  std::u16string lines;
  lines.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'\r' || text[i] == u'\n') {
      lines += u"\r\n";
      if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') ++i;
    } else {
      lines += text[i] == 0 ? u' ' : text[i];
    }
  }
  return lines;
}

bool HasRawBytes(const MessageParts& parts) {
  const auto raw = [](char c) { return (static_cast<unsigned char>(c) & 0x80) != 0; };
  return std::any_of(parts.headers.begin(), parts.headers.end(), [raw](const HeaderField& field) {
    return std::any_of(field.value.begin(), field.value.end(), raw);
  });
}

std::string HeaderOf(const MessageParts& parts, const Charsets& charsets) {
  // Asking all parts is for the few mails that need it.
  const std::string declared = HasRawBytes(parts) ? CharsetOfTexts(parts, charsets) : std::string();
  std::u16string header;
  for (const HeaderField& field : parts.headers) header += DecodeField(field, declared, charsets) + u"\r\n";
  return charsets.ToHostText(header) + "\r\n";
}

}  // namespace

std::string MakeHostHeader(std::string_view raw, const Charsets& charsets) {
  return HeaderOf(SplitMessage(raw), charsets);
}

HostMessage MakeHostMessage(std::string_view raw, const Charsets& charsets) {
  const MessageParts parts = SplitMessage(raw);
  PartContent content = ReadMessage(parts, charsets);

  HostMessage message;
  message.text = HeaderOf(parts, charsets);
  message.body_offset = message.text.size();
  if (content.text) {
    message.text += charsets.ToHostText(WithHostLineEnds(content.text->text));
    message.body_was_html = content.text->was_html;
  }
  message.attachments = std::move(content.attachments);
  return message;
}

}  // namespace wrenfold
