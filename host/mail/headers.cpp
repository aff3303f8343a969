#include "host/mail/headers.h"

#include <algorithm>

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

// Bytes up to the LF that ends a line, which an escape never holds.
std::size_t LengthOfLine(std::string_view text) {
  const std::size_t end = text.find('\n');
  return end == std::string_view::npos ? text.size() : end + 1;
}

std::string_view WithoutLineEnd(std::string_view line) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
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
  const std::size_t colon = lines.find(':');
  return colon != lines.npos && EqualsIgnoringCase(lines.substr(0, colon), name);
}

std::string_view TextHeader::Value() const {
  std::string_view value = lines.substr(std::min(lines.find(':'), lines.size() - 1) + 1);
  while (!value.empty() && IsBlank(value[0])) value.remove_prefix(1);
  return WithoutLineEnd(value);
}

std::optional<TextHeader> FieldAt(std::string_view text, std::size_t at) {
  if (at >= text.size() || IsLineEnd(text[at])) return std::nullopt;
  std::size_t end = at;
  do {
    end += LengthOfLine(text.substr(end));
  } while (end < text.size() && IsBlank(text[end]));
  return TextHeader{at, text.substr(at, end - at)};
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
