#include "host/mail/mbox.h"

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

// True for "12:34" anywhere.
bool HoldsTime(std::string_view line) {
  const auto digit = [line](std::size_t at) { return IsDigit(line[at]); };
  for (std::size_t colon = line.find(':'); colon != line.npos; colon = line.find(':', colon + 1)) {
    if (colon >= 2 && colon + 2 < line.size() && digit(colon - 2) && digit(colon - 1) && digit(colon + 1) &&
        digit(colon + 2)) {
      return true;
    }
  }
  return false;
}

bool IsFromLine(std::string_view line) { return line.starts_with("From ") && HoldsTime(line); }

// ">From " and ">>From " lose one ">".
bool IsQuotedFrom(std::string_view line) {
  const std::size_t marks = line.find_first_not_of('>');
  return marks != line.npos && marks > 0 && line.substr(marks).starts_with("From ");
}

}  // namespace

bool IsMbox(std::string_view bytes) { return IsFromLine(bytes.substr(0, FirstLine(bytes).text)); }

std::vector<MboxSpan> MboxSpans(std::string_view bytes) {
  std::vector<MboxSpan> spans;
  bool after_empty = true;
  for (std::size_t at = 0; at < bytes.size();) {
    const LineLength length = FirstLine(bytes.substr(at));
    if (after_empty && IsFromLine(bytes.substr(at, length.text))) {
      if (!spans.empty()) spans.back().end = at;
      spans.push_back({at, at + length.with_end, bytes.size()});
    }
    after_empty = length.text == 0;
    at += length.with_end;
  }
  return spans;
}

std::string MailOfSpan(std::string_view bytes, const MboxSpan& span) {
  std::string mail;
  mail.reserve(span.end - span.mail);
  std::size_t separator = 0;  // bytes of the last line when it is empty
  for (std::size_t at = span.mail; at < span.end;) {
    const LineLength length = FirstLine(bytes.substr(at));
    const std::string_view line = bytes.substr(at, length.with_end);
    mail += IsQuotedFrom(line) ? line.substr(1) : line;
    separator = length.text == 0 ? length.with_end : 0;
    at += length.with_end;
  }
  if (mail.size() > separator) mail.resize(mail.size() - separator);
  return mail;
}

std::string WithoutSpans(std::string_view bytes, std::span<const MboxSpan> left_out) {
  std::string kept;
  std::size_t at = 0;
  for (const MboxSpan& span : left_out) {
    kept += bytes.substr(at, span.begin - at);
    at = span.end;
  }
  return kept.append(bytes.substr(at));
}

std::string MboxSeparator(std::string_view ending) {
  if (ending.empty() || ending == "\n" || ending == "\r\n") return "";
  if (!ending.ends_with('\n')) return "\r\n\r\n";
  return ending.ends_with("\n\n") || ending.ends_with("\n\r\n") ? "" : "\r\n";
}

}  // namespace wrenfold
