// Walking whole address lists.
#pragma once

#include <cstddef>
#include <string_view>

#include "src/addresses/address_entry.h"

namespace wfinfo {

struct AddressCount {
  std::size_t entries;
  AddressError end;  // what stopped the count: kNoEntry at the end of the list
};

// Entries of `list` up to its end or the first malformed entry. An empty entry between two separators counts.
AddressCount CountAddresses(std::string_view list);

// Bytes of an entry that macros get, terminator included.
inline constexpr std::size_t kListedAddressRoom = 512;

struct ListedAddress {
  std::string_view text;  // as it stands in the list, without its separator and surrounding blanks
  AddressError error;     // kNoEntry: the list ends before it; else that of an entry up to it
};

// Entry `n` of `list`, counted from 0.
ListedAddress NthAddress(std::string_view list, std::size_t n);

// The same for who asks for many entries of one list: a long list is read once. A copy of it is kept with the
// places of its entries, and these count only as long as the copy is equal to what is asked about, byte for
// byte: a list that changed where it stands is read anew. Any thread may ask; one that finds another at it
// reads from the start.
ListedAddress NthAddressAgain(std::string_view list, std::size_t n);

// Shorter lists are read from the start: that takes no longer than to compare them.
inline constexpr std::size_t kRememberedList = 2048;

}  // namespace wfinfo
