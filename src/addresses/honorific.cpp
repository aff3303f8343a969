#include "src/addresses/honorific.h"

#include "src/addresses/address_entry.h"
#include "src/addresses/display_name.h"
#include "src/text/host_text.h"
#include "src/text/measured_text.h"

namespace wfinfo {

namespace {

// True when `text` ends in `tail` at a character's border.
bool EndsWith(std::string_view text, std::string_view tail) {
  return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail &&
         !SplitsUnit(text, text.size() - tail.size());
}

// What of a bare address serves as a name: the part in front of the last "@".
std::string_view LocalPart(std::string_view address) {
  std::size_t sign = address.size();
  for (std::size_t at = 0; at < address.size(); at += UnitLength(address.substr(at))) {
    if (address[at] == '@') sign = at;
  }
  return address.substr(0, sign);
}

// `name` without its enclosing quotes; what is left still has its backslashes.
std::string_view Unquoted(std::string_view name, bool quoted) {
  return quoted ? name.substr(1, name.size() - 2) : name;
}

void PutName(std::string_view name, std::string_view honorific, bool quoted, MeasuredText& output) {
  if (!quoted) {
    output.Add(name);
    output.Add(honorific);
    return;
  }
  output.Add("\"");
  PutQuotedInside(name, kCodePageShiftJis, [&](std::string_view piece) { output.Add(piece); });
  PutQuotedInside(WithoutHalfCharacter(honorific, kCodePageShiftJis), kCodePageShiftJis,
                  [&](std::string_view piece) { output.Add(piece); });
  output.Add("\"");
}

}  // namespace

std::size_t ComposeWithHonorific(std::string_view list, std::string_view honorific, bool also_without_name,
                                 char* out) {
  AddressParts parts;
  if (SplitAddressEntry(list, &parts).error != AddressError::kNone) return 0;
  const std::string_view address = parts.address;
  std::string_view name = parts.name;
  const bool nameless = name.empty();
  const bool has_sign = LocalPart(address).size() < address.size();
  MeasuredText output(out);
  if (nameless) {
    if (address.empty()) return 0;
    name = LocalPart(address);
    if (has_sign && (!also_without_name || name.empty())) {
      output.Add(address);
      return output.length();
    }
  }
  const bool was_quoted = IsQuotedName(name, kCodePageShiftJis);
  name = Unquoted(name, was_quoted);
  if (EndsWith(name, honorific)) honorific = {};
  const bool quoted = was_quoted || NeedsQuotes(honorific, kCodePageShiftJis) ||
                      (nameless && has_sign && NeedsQuotes(name, kCodePageShiftJis));
  PutName(name, honorific, quoted, output);
  if (nameless && !has_sign) return output.length();
  output.Add(" <");
  output.Add(address);
  output.Add(">");
  return output.length();
}

}  // namespace wfinfo
