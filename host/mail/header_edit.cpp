#include "host/mail/header_edit.h"

#include <algorithm>

#include "host/base/ascii.h"
#include "host/mail/headers.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

// `value` as folded lines: a line end that no blank follows would begin another header, and becomes a blank.
std::string Folded(std::string_view value) {
  std::string folded;
  while (!value.empty()) {
    if (!IsLineEnd(value[0])) {
      // The last byte of an escape may be a CR.
      const std::size_t length = wfinfo::StartsWithEscape(value) ? wfinfo::kEscapeLength : 1;
      folded += value.substr(0, length);
      value.remove_prefix(length);
      continue;
    }
    value.remove_prefix(value.starts_with("\r\n") ? 2 : 1);
    if (!value.empty()) folded += IsBlank(value[0]) ? "\r\n" : " ";
  }
  return folded;
}

std::string HeaderLine(std::string_view name, std::string_view value) {
  return std::string(WithoutColon(name)) + ": " + Folded(value) + "\r\n";
}

}  // namespace

bool CanBeHeader(std::string_view name) {
  const std::string_view bare = WithoutColon(name);
  return !bare.empty() && std::ranges::all_of(bare, [](char c) { return c > ' ' && c <= '~' && c != ':'; });
}

void AddHeader(std::string& text, std::string_view name, std::string_view value) {
  if (!CanBeHeader(name)) return;
  std::size_t at = 0;
  while (const auto field = FieldAt(text, at)) at += field->lines.size();
  // The last header of a mail that ends behind it may lack its line end.
  if (at > 0 && text[at - 1] != '\n') text.insert(at, "\r\n"), at += 2;
  text.insert(at, HeaderLine(name, value));
}

bool SetHeader(std::string& text, std::string_view name, std::string_view value, std::size_t n) {
  if (!CanBeHeader(name)) return false;
  if (const auto found = FindField(text, name, n)) {
    text.replace(found->at, found->lines.size(), HeaderLine(name, value));
    return true;
  }
  if (CountHeaders(text, name) != n) return false;
  AddHeader(text, name, value);
  return true;
}

bool DeleteHeader(std::string& text, std::string_view name, std::size_t n) {
  const auto found = FindField(text, name, n);
  if (found) text.erase(found->at, found->lines.size());
  return found.has_value();
}

}  // namespace wrenfold
