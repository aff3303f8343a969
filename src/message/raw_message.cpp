#include "src/message/raw_message.h"

#include <algorithm>
#include <cstring>

#include "src/message/line_scan.h"
#include "src/text/ascii.h"
#include "src/text/host_text.h"

namespace wfinfo {
namespace {

constexpr std::size_t kEveryOccurrence = static_cast<std::size_t>(-1);

// Behind the line end at `p`: one CR, if any, and then one LF, if any.
const char* BehindLineEnd(const char* p) {
  if (*p == '\r') ++p;
  return *p == '\n' ? p + 1 : p;
}

// The end of the logical header line that goes on at `p`, its last line end not included.
const char* LogicalLineEnd(const char* p) {
  for (;;) {
    const char* const end = Lines().find_line_end(p);
    p = BehindLineEnd(end);
    if (!IsBlank(*p)) return end;  // another line, or the end of the text
  }
}

bool EndsInEscape(std::string_view text) {
  return text.size() >= kEscapeLength && StartsWithEscape(text.substr(text.size() - kEscapeLength));
}

}  // namespace

HeaderName::HeaderName(std::string_view name) : length_(std::min(name.size(), kLongest)) {
  if (length_ > 0) std::memcpy(text_, name.data(), length_);
  if (length_ == 0 || text_[length_ - 1] != ':') text_[length_++] = ':';
}

std::optional<std::string_view> HeaderValue(const char* text, const HeaderName& name, std::size_t index) {
  const HeaderHit hit = Lines().find_header(text, name.view(), index);
  if (hit.line == nullptr) return std::nullopt;
  const char* value = hit.line + name.view().size();
  while (IsBlank(*value)) ++value;
  return std::string_view(value, static_cast<std::size_t>(LogicalLineEnd(value) - value));
}

std::size_t CountHeaders(const char* text, const HeaderName& name) {
  return Lines().find_header(text, name.view(), kEveryOccurrence).matches;
}

const char* BodyStart(const char* text) { return BehindLineEnd(Lines().find_header(text, {}, 0).header_end); }

std::string_view HeaderBlock(const char* text) {
  return {text, static_cast<std::size_t>(BodyStart(text) - text)};
}

std::string_view WithoutFinalLineEnd(std::string_view text) {
  if (!text.ends_with("\r\n") || EndsInEscape(text.substr(0, text.size() - 1))) return text;
  return text.substr(0, text.size() - 2);
}

std::optional<std::string_view> BodyLineAt(const char* text, std::size_t index) {
  const char* const line = Lines().skip_lines(BodyStart(text), index);
  if (line == nullptr || *line == '\0') return std::nullopt;
  return std::string_view(line, static_cast<std::size_t>(Lines().find_line_end(line) - line));
}

std::size_t CountBodyLines(const char* text) {
  const char* const body = BodyStart(text);
  const LineTally tally = Lines().count_ends(body);
  if (tally.end == body) return 0;
  const std::string_view read(body, static_cast<std::size_t>(tally.end - body));
  const bool ended = read.back() == '\n' || (read.back() == '\r' && !EndsInEscape(read));
  return tally.ends + (ended ? 0 : 1);
}

void ClearEscapeMarks(char* text, std::size_t length) {
  char* const end = text + length;
  for (char* p = text;
       (p = static_cast<char*>(std::memchr(p, kEscapeByte, static_cast<std::size_t>(end - p))));) {
    if (!StartsWithEscape({p, static_cast<std::size_t>(end - p)})) {
      ++p;
      continue;
    }
    p[kEscapeLength - 1] = static_cast<char>(p[kEscapeLength - 1] & 0x7F);
    p += kEscapeLength;
  }
}

}  // namespace wfinfo
