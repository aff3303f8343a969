#include "host/writing/recipients.h"

#include <algorithm>
#include <optional>
#include <string>

#include "host/base/ascii.h"
#include "host/mime/mail_encoding.h"

namespace wrenfold {
namespace {

constexpr std::string_view kBroken = "()<>[]:;@\\,\"";

bool HoldsNoneOf(std::string_view text, std::string_view characters) {
  return std::ranges::none_of(text, [characters](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte <= ' ' || byte == 0x7F || characters.find(c) != characters.npos;
  });
}

// Behind the quoted text that `text` begins with; npos when its quote does not close.
std::size_t EndOfQuoted(std::string_view text) {
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] == '\\') {
      ++at;
    } else if (text[at] == '"') {
      return at + 1;
    }
  }
  return text.npos;
}

// address = ( word / quoted ) "@" ( word / "[" number "]" )      no blanks outside of quotes
bool IsAddress(std::string_view text) {
  const bool quoted = text.starts_with('"');
  const std::size_t at = quoted ? EndOfQuoted(text) : text.find('@');
  if (at == text.npos || at == 0 || at >= text.size() || text[at] != '@') return false;
  if (!quoted && !HoldsNoneOf(text.substr(0, at), kBroken)) return false;
  std::string_view host = text.substr(at + 1);
  const bool number = host.starts_with('[') && host.ends_with(']');
  if (number) host = host.substr(1, host.size() - 2);
  return !host.empty() && HoldsNoneOf(host, number ? "[]@" : kBroken);
}

// The entry without its comments; nullopt when one does not close.
std::optional<std::string> WithoutComments(std::string_view entry) {
  std::string text;
  std::size_t depth = 0;
  while (!entry.empty()) {
    std::size_t length = 1;
    if (entry[0] == '"' && depth == 0) {
      length = std::min(EndOfQuoted(entry), entry.size());
    } else if (entry[0] == '\\') {
      length = std::min<std::size_t>(2, entry.size());
    }
    if (entry[0] == '(') ++depth;
    if (depth == 0) text += entry.substr(0, length);
    if (entry[0] == ')' && depth > 0) --depth;
    entry.remove_prefix(length);
  }
  return depth == 0 ? std::optional(text) : std::nullopt;
}

// "Team: a@x" begins a group, "b@x;" ends one.
std::string_view WithoutGroup(std::string_view entry) {
  if (entry.ends_with(';')) entry = Trim(entry.substr(0, entry.size() - 1));
  const std::size_t colon = entry.find(':');
  if (!entry.starts_with('"') && colon < entry.find_first_of("<@")) entry = Trim(entry.substr(colon + 1));
  return entry;
}

// What stands in an entry as its address; nullopt when nothing does.
std::optional<std::string> AddressIn(std::string_view piece) {
  const auto text = WithoutComments(piece);
  if (!text) return std::nullopt;
  std::string_view entry = WithoutGroup(Trim(*text));
  if (entry.ends_with('>')) {
    const std::size_t open = entry.rfind('<');
    if (open == entry.npos) return std::nullopt;
    entry = Trim(entry.substr(open + 1, entry.size() - open - 2));
  }
  return IsAddress(entry) ? std::optional<std::string>(entry) : std::nullopt;
}

// "undisclosed-recipients:;"
bool IsEmptyGroup(std::string_view entry) {
  return entry.ends_with(';') && Trim(entry.substr(0, entry.size() - 1)).ends_with(':');
}

}  // namespace

std::string_view UnreadableRecipient(std::string_view list) {
  std::string_view name;  // whose address may follow
  for (const std::string_view piece : AddressPieces(list)) {
    const auto address = AddressIn(piece);
    // Headers are ASCII: encoded as words, such an address is none.
    if (address && std::ranges::any_of(*address, [](char c) { return (c & 0x80) != 0; })) return piece;
    const bool has_address = address.has_value();
    if (has_address && piece.ends_with('>')) name = {};
    if (!name.empty()) return name;
    if (has_address || IsEmptyGroup(piece)) continue;
    if (piece.find_first_of("<>@") != piece.npos) return piece;
    name = piece;
  }
  return name;
}

bool NamesRecipient(std::string_view list) {
  return std::ranges::any_of(AddressPieces(list),
                             [](std::string_view piece) { return AddressIn(piece).has_value(); });
}

}  // namespace wrenfold
