#include "host/mail/mail_rewrite.h"

#include <vector>

#include "host/base/ascii.h"
#include "host/mail/draft_file.h"
#include "host/mail/headers.h"
#include "host/mail/mail_store.h"
#include "host/mime/html_write.h"
#include "host/mime/mail_encoding.h"
#include "host/mime/message.h"
#include "host/mime/sections.h"

namespace wrenfold {
namespace {

std::vector<std::string_view> FieldsOf(std::string_view text) {
  std::vector<std::string_view> fields;
  std::size_t at = 0;
  while (const auto field = FieldAt(text, at)) {
    fields.push_back(field->lines);
    at += field->lines.size();
  }
  return fields;
}

// The bytes of a header, without its line end.
std::string_view BytesOf(const HeaderField& field) {
  if (!field.has_colon) return field.value;
  return {field.name.data(),
          static_cast<std::size_t>(field.value.data() + field.value.size() - field.name.data())};
}

std::string NewHeader(std::string_view lines) {
  const std::size_t colon = lines.find(':');
  if (colon == lines.npos) return std::string(lines);
  const auto header = FieldAt(lines, 0);
  return WrittenHeader(Trim(lines.substr(0, colon)), header ? header->Value() : "");
}

bool SaysContent(std::string_view lines) { return IsContentHeader(Trim(lines.substr(0, lines.find(':')))); }

// The headers of `after`: the bytes of those of `before` that are still there, in their order.
std::string Headers(const MessageParts& parts, std::string_view before, std::string_view after,
                    bool with_content) {
  const std::vector<std::string_view> old_fields = FieldsOf(before);
  const bool matches = old_fields.size() == parts.headers.size();
  std::string headers;
  std::size_t next = 0;  // of the old headers
  for (const std::string_view field : FieldsOf(after)) {
    if (!with_content && SaysContent(field)) continue;
    std::size_t same = next;
    while (matches && same < old_fields.size() && old_fields[same] != field) ++same;
    if (matches && same < old_fields.size()) {
      headers.append(BytesOf(parts.headers[same])).append("\r\n");
      next = same + 1;
    } else {
      headers += NewHeader(field);
    }
  }
  return headers;
}

std::string NewContent(std::string_view raw, const MessageParts& parts, std::string_view body,
                       const std::string& boundary) {
  std::string text = WrittenText(body, "", CharsetOfShownText(parts), boundary);
  const HostMessage message = MakeHostMessage(raw);
  if (message.attachments.empty()) return text;
  std::vector<std::string> written = {std::move(text)};
  for (const Attachment& attachment : message.attachments) {
    written.push_back(FilePart(SystemCharsets().HostToUtf8(attachment.file_name), attachment.bytes,
                               attachment.content_type));
  }
  return MultiPart("mixed", boundary, written);
}

// CR LF as the line end that the mail has.
std::string WithLineEndsOf(std::string_view raw, std::string text) {
  const LineLength first = FirstLine(raw);
  if (first.with_end == first.text || raw.substr(first.text, first.with_end - first.text) == "\r\n")
    return text;
  std::string lines;
  for (std::string_view rest = text; !rest.empty();) {
    const LineLength line = FirstLine(rest);
    lines.append(rest.substr(0, line.text));
    if (line.with_end > line.text) lines += raw.substr(first.text, first.with_end - first.text);
    rest.remove_prefix(line.with_end);
  }
  return lines;
}

std::string QuotedFromLines(std::string_view raw) {
  std::string text;
  while (!raw.empty()) {
    const LineLength line = FirstLine(raw);
    const std::size_t marks = raw.find_first_not_of('>');
    if (marks != raw.npos && raw.substr(marks).starts_with("From ")) text += '>';
    text += raw.substr(0, line.with_end);
    raw.remove_prefix(line.with_end);
  }
  return text;
}

// Where the mail that begins at `offset` of an mbox ends: at the next "From " line behind an empty one.
std::size_t EndInMbox(std::string_view file, std::size_t offset) {
  bool after_empty = false;
  while (offset < file.size()) {
    const LineLength line = FirstLine(file.substr(offset));
    if (after_empty && IsMbox(file.substr(offset, line.with_end))) return offset;
    after_empty = line.text == 0;
    offset += line.with_end;
  }
  return offset;
}

}  // namespace

std::string RewrittenMail(std::string_view raw, std::string_view before, std::string_view after,
                          const std::string& boundary) {
  const MessageParts parts = SplitMessage(raw);
  const std::string_view body = SplitMail(after).body;
  if (SplitMail(before).body == body) {
    const std::string headers = WithLineEndsOf(raw, Headers(parts, before, after, true) + "\r\n");
    return headers + std::string(parts.body);
  }
  return WithLineEndsOf(raw, Headers(parts, before, after, false) + "MIME-Version: 1.0\r\n" +
                                 NewContent(raw, parts, body, boundary));
}

std::optional<std::string> WithMailReplaced(std::string_view file, std::uint64_t offset,
                                            std::string_view old_raw, std::string_view new_raw) {
  if (!IsMbox(file)) {
    if (offset != 0 || file != old_raw) return std::nullopt;
    return std::string(new_raw);
  }
  for (const StoredMail& mail : SplitMbox(file)) {
    if (mail.offset != offset || mail.raw != old_raw) continue;
    const auto begin = static_cast<std::size_t>(offset);
    const std::size_t end = EndInMbox(file, begin);
    std::string text = QuotedFromLines(new_raw);
    const std::string_view line_end = text.find("\r\n") == text.npos ? "\n" : "\r\n";
    if (!text.ends_with('\n')) text += line_end;
    if (end < file.size()) text += line_end;
    return std::string(file.substr(0, begin)).append(text).append(file.substr(end));
  }
  return std::nullopt;
}

}  // namespace wrenfold
