#include "host/mime/sections.h"

#include <algorithm>

namespace wrenfold {
namespace {

// True when `text` begins with "Name:"; names are printable ASCII without blanks.
bool BeginsWithName(std::string_view text) {
  const std::size_t length = text.substr(0, FirstLine(text).text).find(':');
  if (length == text.npos || length == 0) return false;
  const std::string_view name = Trim(text.substr(0, length));
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) { return c > ' ' && c <= '~'; });
}

// True when a part's header goes on with the line that `raw` begins with.
bool IsHeaderOfPart(std::string_view raw) {
  if (BeginsWithName(raw)) return true;
  const std::string_view next = raw.substr(FirstHeader(raw).with_end);
  return BeginsWithName(next) && EqualsIgnoringCase(next.substr(0, 8), "content-");
}

// True when a mail begins with its header. One that begins with any other line is all body; a
// continuation or a "From " line in front of the first header is tolerated.
bool BeginsWithHeader(std::string_view raw) {
  while (!HeadersEndAt(raw)) {
    if (BeginsWithName(raw)) return true;
    const bool tolerated = IsBlank(raw[0]) || raw.starts_with("From ") || raw.starts_with(">From ");
    if (!tolerated) return false;
    raw.remove_prefix(FirstLine(raw).with_end);
  }
  return false;
}

}  // namespace

LineLength FirstHeader(std::string_view text, LineRule line) {
  LineLength header = line(text);
  while (header.with_end < text.size() && IsBlank(text[header.with_end])) {
    const LineLength next = line(text.substr(header.with_end));
    header = {header.with_end + next.text, header.with_end + next.with_end};
  }
  return header;
}

HeaderField FieldOf(std::string_view header, LineRule line) {
  const std::string_view first = header.substr(0, line(header).text);
  const std::size_t colon = first.find(':');
  if (colon == first.npos) return {{}, header, false};
  return {header.substr(0, colon), header.substr(colon + 1), true};
}

MessageParts SplitMessage(std::string_view raw) {
  MessageParts message;
  if (!HeadersEndAt(raw) && !BeginsWithHeader(raw)) return {{}, raw};
  while (!HeadersEndAt(raw)) {
    const LineLength header = FirstHeader(raw);
    message.headers.push_back(FieldOf(raw.substr(0, header.text)));
    raw.remove_prefix(header.with_end);
  }
  raw.remove_prefix(FirstLine(raw).with_end);
  message.body = raw;
  return message;
}

MessageParts SplitPart(std::string_view raw) {
  MessageParts part;
  while (!HeadersEndAt(raw) && IsHeaderOfPart(raw)) {
    const LineLength header = FirstHeader(raw);
    part.headers.push_back(FieldOf(raw.substr(0, header.text)));
    raw.remove_prefix(header.with_end);
  }
  if (HeadersEndAt(raw)) raw.remove_prefix(FirstLine(raw).with_end);
  part.body = raw;
  return part;
}

std::string_view FindHeader(const MessageParts& message, std::string_view name) {
  for (const HeaderField& field : message.headers) {
    if (field.has_colon && EqualsIgnoringCase(Trim(field.name), name)) return field.value;
  }
  return {};
}

}  // namespace wrenfold
