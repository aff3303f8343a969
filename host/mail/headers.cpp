#include "host/mail/headers.h"

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

// Bytes up to the LF that ends a line, which an escape never holds.
std::size_t LengthOfLine(std::string_view text) {
  const std::size_t end = text.find('\n');
  return end == std::string_view::npos ? text.size() : end + 1;
}

// Takes the next header off `block`: its line and the folded lines behind it. Empty at the empty line and
// the end.
std::string_view TakeHeader(std::string_view& block) {
  if (block.starts_with("\r") || block.starts_with("\n")) return {};
  std::size_t length = LengthOfLine(block);
  while (length < block.size() && IsBlank(block[length])) {
    length += LengthOfLine(block.substr(length));
  }
  const std::string_view header = block.substr(0, length);
  block.remove_prefix(length);
  return header;
}

std::string_view WithoutLineEnd(std::string_view line) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

// Calls `visit` with the value of each header `name` until it returns false.
template <class Visit>
void EachValue(std::string_view text, std::string_view name, Visit visit) {
  if (name.ends_with(':')) name.remove_suffix(1);
  for (std::string_view header; !(header = TakeHeader(text)).empty();) {
    const std::size_t colon = header.find(':');
    if (colon == std::string_view::npos || !EqualsIgnoringCase(header.substr(0, colon), name)) continue;
    std::string_view value = header.substr(colon + 1);
    while (!value.empty() && IsBlank(value[0])) value.remove_prefix(1);
    if (!visit(WithoutLineEnd(value))) return;
  }
}

}  // namespace

std::optional<std::string_view> HeaderValue(std::string_view text, std::string_view name, std::size_t n) {
  std::optional<std::string_view> found;
  EachValue(text, name, [&](std::string_view value) {
    if (n-- > 0) return true;
    found = value;
    return false;
  });
  return found;
}

std::size_t CountHeaders(std::string_view text, std::string_view name) {
  std::size_t count = 0;
  EachValue(text, name, [&count](std::string_view) { return ++count > 0; });
  return count;
}

std::string DisplayedHeaders(std::string_view text) {
  constexpr std::string_view kDisplayed[] = {"From", "To", "Cc", "Subject", "Date"};
  std::string lines;
  for (const std::string_view name : kDisplayed) {
    EachValue(text, name, [&](std::string_view value) {
      lines.append(name).append(": ").append(value).append("\r\n");
      return true;
    });
  }
  return lines;
}

}  // namespace wrenfold
