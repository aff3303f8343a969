#include "src/addresses/display_name.h"

#include <cstring>

#include "src/text/host_text.h"

namespace wfinfo {

namespace {

constexpr std::size_t kRewriteLimit = 1021;  // names from here on are only enclosed
constexpr std::size_t kLastQuote = 510;      // the closing quote stands at this byte at the latest

std::size_t UnitIn(std::string_view text, unsigned code_page) {
  if (code_page == kCodePageUtf8 && !StartsWithEscape(text)) return text.empty() ? 0 : 1;
  return UnitLength(text);
}

// The last two elements of a name, 0 for one that is no single byte.
struct Tail {
  char second_last = 0;
  char last = 0;
};

Tail TailOf(std::string_view name, unsigned code_page) {
  Tail tail;
  while (!name.empty()) {
    const std::size_t length = NameElement(name, code_page);
    tail = {tail.last, length == 1 ? name[0] : '\0'};
    name.remove_prefix(length);
  }
  return tail;
}

std::string_view Inside(std::string_view name) { return name.substr(1, name.size() - 2); }

// Strips outer quotes around outer double quotes, "" "" and '" "', down to one pair.
std::string_view StripDoubledQuotes(std::string_view name, unsigned code_page) {
  while (name.size() >= 4 && name[1] == '"' && (name[0] == '"' || name[0] == '\'')) {
    const Tail tail = TailOf(name, code_page);
    if (tail.second_last != '"' || tail.last != name[0]) break;
    name = Inside(name);
  }
  return name;
}

bool IsInApostrophes(std::string_view name, unsigned code_page) {
  return name.size() >= 2 && name[0] == '\'' && TailOf(name, code_page).last == '\'';
}

// Writes `inner` in double quotes, cut at an element's border when it does not fit.
void WriteQuoted(std::string_view inner, unsigned code_page, char* out) {
  std::size_t length = 0;
  bool full = false;
  out[length++] = '"';
  PutQuotedInside(inner, code_page, [&](std::string_view piece) {
    full = full || length + piece.size() > kLastQuote;
    if (!full) length += piece.copy(out + length, piece.size());
  });
  out[length++] = '"';
  out[length] = '\0';
}

}  // namespace

std::size_t NameElement(std::string_view name, unsigned code_page) {
  const std::size_t first = UnitIn(name, code_page);
  return name[0] == '\\' ? 1 + UnitIn(name.substr(1), code_page) : first;
}

bool IsQuotedName(std::string_view name, unsigned code_page) {
  if (!name.starts_with('"')) return false;
  for (std::size_t at = 1; at < name.size();) {
    const std::size_t length = NameElement(name.substr(at), code_page);
    if (name[at] == '"') return at + 1 == name.size();
    at += length;
  }
  return false;
}

bool NeedsQuotes(std::string_view name, unsigned code_page) {
  while (!name.empty()) {
    const std::size_t length = UnitIn(name, code_page);
    if (length == 1 && std::strchr(",<>().:;'\"@[]", name[0]) != nullptr && name[0] != '\0') return true;
    name.remove_prefix(length);
  }
  return false;
}

std::string_view WithoutHalfCharacter(std::string_view name, unsigned code_page) {
  if (name.empty() || code_page == kCodePageUtf8 || !IsLeadByte(name.back())) return name;
  std::size_t last = 0;
  for (std::size_t at = 0; at < name.size(); at += UnitLength(name.substr(at))) last = at;
  return name.substr(0, last + 1 == name.size() ? last : name.size());
}

void QuoteDisplayName(char* name, unsigned code_page) {
  std::string_view view = name;
  if (IsQuotedName(view, code_page) || !NeedsQuotes(view, code_page)) return;
  char quoted[kAddressRoom];
  view = WithoutHalfCharacter(view, code_page);
  if (view.size() < kRewriteLimit) view = StripDoubledQuotes(view, code_page);
  if (IsQuotedName(view, code_page)) view = Inside(view);
  while (view.size() < kRewriteLimit && IsInApostrophes(view, code_page)) view = Inside(view);
  WriteQuoted(view, code_page, quoted);
  std::memcpy(name, quoted, std::strlen(quoted) + 1);
}

}  // namespace wfinfo
