#include "host/mail/headers.h"

#include <algorithm>

#include "host/base/ascii.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

// The line that host text begins with. It ends at a LF, which an escape never holds, and at the CR before it.
LineLength FirstHostLine(std::string_view text) {
  const std::size_t end = text.find('\n');
  if (end == text.npos) return {text.size(), text.size()};
  return {end - (text.substr(0, end).ends_with('\r') ? 1u : 0u), end + 1};
}

// Calls `visit` with each header `name` until it returns false.
template <class Visit>
void EachField(std::string_view text, std::string_view name, Visit visit) {
  name = WithoutColon(name);
  std::size_t at = 0;
  while (const auto field = FieldAt(text, at)) {
    if (field->Is(name) && !visit(*field)) return;
    at += field->lines.size();
  }
}

}  // namespace

std::string_view WithoutColon(std::string_view name) {
  if (name.ends_with(':')) name.remove_suffix(1);
  return name;
}

bool TextHeader::Is(std::string_view name) const {
  return field.has_colon && EqualsIgnoringCase(field.name, name);
}

std::string_view TextHeader::Value() const {
  if (!field.has_colon) return {};
  return field.value.substr(std::min(field.value.find_first_not_of(" \t"), field.value.size()));
}

std::optional<TextHeader> FieldAt(std::string_view text, std::size_t at) {
  text.remove_prefix(std::min(at, text.size()));
  if (HeadersEndAt(text)) return std::nullopt;
  const LineLength header = FirstHeader(text, &FirstHostLine);
  return TextHeader{at, text.substr(0, header.with_end),
                    FieldOf(text.substr(0, header.text), &FirstHostLine)};
}

std::optional<TextHeader> FindField(std::string_view text, std::string_view name, std::size_t n) {
  std::optional<TextHeader> found;
  EachField(text, name, [&](const TextHeader& field) {
    if (n-- > 0) return true;
    found = field;
    return false;
  });
  return found;
}

MailText SplitMail(std::string_view text) {
  if (text.starts_with("\r\n")) return {"", text.substr(0, 2), text.substr(2)};
  const std::size_t end = text.find("\r\n\r\n");
  if (end == text.npos) return {text, "", ""};
  return {text.substr(0, end + 2), text.substr(end + 2, 2), text.substr(end + 4)};
}

std::optional<std::string_view> HeaderValue(std::string_view text, std::string_view name, std::size_t n) {
  const auto field = FindField(text, name, n);
  return field ? std::optional(field->Value()) : std::nullopt;
}

std::string Unfolded(std::string_view value) {
  std::string line;
  while (!value.empty()) {
    const std::string_view unit = wfinfo::NextUnit(value);
    if (unit == "\t") {
      line += ' ';
    } else if (!IsLineEnd(unit[0])) {
      line += unit;
    }
    value.remove_prefix(unit.size());
  }
  return line;
}

std::size_t CountHeaders(std::string_view text, std::string_view name) {
  std::size_t count = 0;
  EachField(text, name, [&count](const TextHeader&) { return ++count > 0; });
  return count;
}

std::string DisplayedHeaders(std::string_view text) {
  constexpr std::string_view kDisplayed[] = {"From", "To", "Cc", "Subject", "Date"};
  std::string lines;
  for (const std::string_view name : kDisplayed) {
    EachField(text, name, [&](const TextHeader& field) {
      lines.append(name).append(": ").append(field.Value()).append("\r\n");
      return true;
    });
  }
  return lines;
}

}  // namespace wrenfold
