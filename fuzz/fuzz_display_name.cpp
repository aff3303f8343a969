// Quoting display names: the result fits 512 bytes and is one quotation or needs none, doing it again changes
// nothing, and a name that had room comes back from an entry that is made with it.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "fuzz/demand.h"
#include "src/addresses/address_entry.h"
#include "src/addresses/display_name.h"

namespace {

void Check(std::string_view name, unsigned code_page) {
  // An exact buffer lets the sanitizer see a write behind it.
  std::string buffer(name);
  buffer.resize(std::max<std::size_t>(name.size() + 1, wfinfo::kAddressRoom));
  buffer.shrink_to_fit();
  wfinfo::QuoteDisplayName(buffer.data(), code_page);
  const std::string once = buffer.c_str();
  const bool changed = once != name;
  Demand(!changed || once.size() < wfinfo::kAddressRoom);
  Demand(!changed || wfinfo::IsQuotedName(once, code_page));
  Demand(wfinfo::IsQuotedName(once, code_page) || !wfinfo::NeedsQuotes(once, code_page));
  wfinfo::QuoteDisplayName(buffer.data(), code_page);
  Demand(once == buffer.c_str());
}

// A quoted name without line breaks parses back as itself.
void CheckRoundTrip(std::string_view name) {
  if (name.size() > 500 || name.find_first_of("\r\n") != name.npos) return;
  char buffer[wfinfo::kAddressRoom];
  buffer[name.copy(buffer, sizeof buffer - 1)] = '\0';
  wfinfo::QuoteDisplayName(buffer, wfinfo::kCodePageShiftJis);
  const std::string quoted = buffer;
  if (!wfinfo::IsQuotedName(quoted, wfinfo::kCodePageShiftJis)) return;
  const std::string list = quoted + " <a@example.com>, b@example.com";
  wfinfo::AddressParts parts;
  const wfinfo::AddressEntry entry = wfinfo::SplitAddressEntry(list, &parts);
  Demand(entry.error == wfinfo::AddressError::kNone);
  Demand(std::strcmp(parts.address, "a@example.com") == 0);
  Demand(quoted == parts.name);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view name(reinterpret_cast<const char*>(data), size);
  name = name.substr(0, name.find('\0'));
  Check(name, wfinfo::kCodePageShiftJis);
  Check(name, wfinfo::kCodePageUtf8);
  CheckRoundTrip(name);
  return 0;
}
