#include "host/mail/named_address.h"

#include "host/base/ascii.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

std::string OneLine(std::string_view text) {
  std::string line;
  for (; !text.empty(); text.remove_prefix(wfinfo::UnitLength(text))) {
    const std::string_view unit = wfinfo::NextUnit(text);
    line += IsLineEnd(unit[0]) ? " " : unit;
  }
  return std::string(Trim(line));
}

}  // namespace

std::string NamedAddress(std::string_view name, std::string_view address) {
  constexpr std::string_view kSpecials = "()<>[]:;@\\,\".'";
  const std::string shown = OneLine(name);
  if (shown.empty()) return OneLine(address);
  std::string quoted;
  bool special = false;
  for (std::string_view rest = shown; !rest.empty(); rest.remove_prefix(wfinfo::UnitLength(rest))) {
    const std::string_view unit = wfinfo::NextUnit(rest);
    const bool single = unit.size() == 1;
    special |= single && kSpecials.find(unit[0]) != kSpecials.npos;
    if (single && (unit[0] == '"' || unit[0] == '\\')) quoted += '\\';
    quoted += unit;
  }
  return (special ? '"' + quoted + '"' : shown) + " <" + OneLine(address) + ">";
}

bool IsOneAddress(std::string_view address) {
  constexpr std::string_view kDividers = "<>,;:\"\\()";
  address = Trim(address);
  const bool opens = address.starts_with('"');
  bool quoted = opens;
  if (opens) address.remove_prefix(1);
  while (!address.empty()) {
    const std::string_view unit = wfinfo::NextUnit(address);
    address.remove_prefix(unit.size());
    if (unit.size() > 1) continue;
    const char c = unit[0];
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') return false;
    if (quoted && c == '\\') {
      if (!address.empty()) address.remove_prefix(wfinfo::UnitLength(address));
    } else if (quoted && c == '"') {
      quoted = false;
      if (!address.starts_with('@')) return false;
    } else if (!quoted && (c == ' ' || kDividers.find(c) != kDividers.npos)) {
      return false;
    }
  }
  return !quoted;
}

}  // namespace wrenfold
