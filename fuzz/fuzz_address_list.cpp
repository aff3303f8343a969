// Address lists: the fast parser agrees with the plain one on every entry, every part lies inside its entry,
// walks and counts agree, no part ends inside a character, and reading an entry that was read gives the same
// parts again.
#include <cstdint>
#include <cstring>
#include <string>

#include "fuzz/demand.h"
#include "src/addresses/address_entry.h"
#include "src/addresses/address_list.h"
#include "src/addresses/display_name.h"
#include "tests/support/slow_address_entry.h"

namespace {

bool Within(std::string_view part, std::string_view whole) {
  return part.empty() ||
         (part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size());
}

void Compare(std::string_view list, std::size_t at, const wfinfo::AddressEntry& entry, bool utf8) {
  const wfinfo_test::SlowAddressEntry slow(list, at, utf8);
  Demand(entry.error == slow.error);
  Demand(entry.next == slow.next);
  if (entry.error != wfinfo::AddressError::kNone) return;
  Demand(entry.name == slow.name);
  Demand(entry.address == slow.address);
  Demand(entry.text == slow.text);
}

void CheckParts(std::string_view list, const wfinfo::AddressEntry& entry) {
  Demand(Within(entry.text, list) && Within(entry.name, entry.text) && Within(entry.address, entry.text));
  Demand(entry.name.size() < wfinfo::kAddressRoom && entry.address.size() < wfinfo::kAddressRoom);
  // The entry cut out alone reads as the same parts.
  const std::string alone(entry.text);
  const wfinfo::AddressEntry again = wfinfo::ScanAddressEntry(alone, 0);
  if (alone.empty()) return;
  Demand(again.error == wfinfo::AddressError::kNone);
  Demand(again.name == entry.name && again.address == entry.address && again.next == alone.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view list(reinterpret_cast<const char*>(data), size);
  std::size_t entries = 0, at = 0;
  for (;; ++entries) {
    const wfinfo::AddressEntry entry = wfinfo::ScanAddressEntry(list, at);
    Compare(list, at, entry, false);
    if (entry.error != wfinfo::AddressError::kNone) break;
    Demand(entry.next > at && entry.next <= size);
    CheckParts(list, entry);
    if (entries < 4) Demand(wfinfo::NthAddress(list, entries).text == entry.text);
    at = entry.next;
  }
  const wfinfo::AddressError end = wfinfo::ScanAddressEntry(list, at).error;
  const wfinfo::AddressCount count = wfinfo::CountAddresses(list);
  Demand(count.entries == entries && count.end == end);
  const wfinfo::ListedAddress behind = wfinfo::NthAddress(list, entries);
  Demand(behind.text.empty() && behind.error == end);

  Compare(list, 0, wfinfo::ScanAddressEntry(list, 0, {wfinfo::kCodePageUtf8, false}), true);
  wfinfo::AddressParts parts;
  for (const bool words : {false, true}) {
    std::memset(&parts, '#', sizeof parts);
    wfinfo::SplitAddressEntry(list, &parts, {wfinfo::kCodePageShiftJis, words});
    Demand(std::memchr(parts.address, 0, sizeof parts.address) != nullptr);
    Demand(std::memchr(parts.name, 0, sizeof parts.name) != nullptr);
  }
  return 0;
}
