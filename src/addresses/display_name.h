// Display names of addresses: when they must stand in double quotes, and putting them there.
#pragma once

#include <cstddef>
#include <string_view>

#include "src/addresses/address_entry.h"

namespace wfinfo {

// Puts `name`, a zero-terminated text in a buffer of at least 512 bytes, into the form that may stand in
// front of a bracketed address. In place; the result has at most 511 bytes (a longer name that needs no
// change stays).
//
//   "Doe, John"        kept: already one quotation
//   John Doe           kept: none of , < > ( ) . : ; ' " @ [ ]
//   ""John"" '"John"'  "John": doubled outer quotes become one pair
//   'Doe, John'        "Doe, John"
//   John "Jo" Doe      "John \"Jo\" Doe": a quote that has its backslash already gets no second one
//   Doe, John          "Doe, John"
//
// A name that fills the buffer is cut between two characters so that its closing quote always fits. A lone
// backslash at the end of a name that gets quotes is doubled, and half of a double-byte character there is
// left out: both would hide the closing quote.
void QuoteDisplayName(char* name, unsigned code_page);

// True when `name` is one quotation in double quotes from its first byte to its last.
bool IsQuotedName(std::string_view name, unsigned code_page);

// True when `name` contains a character that may not stand outside quotes.
bool NeedsQuotes(std::string_view name, unsigned code_page);

// Length of the element that `name` (not empty) begins with: a backslash with the unit behind it, else
// a unit.
std::size_t NameElement(std::string_view name, unsigned code_page);

// Calls `put` with each piece of `inner` as it stands between double quotes: bare quotes get a backslash.
template <class Put>
void PutQuotedInside(std::string_view inner, unsigned code_page, Put put) {
  while (!inner.empty()) {
    const std::string_view element = inner.substr(0, NameElement(inner, code_page));
    inner.remove_prefix(element.size());
    if (element == "\"") {
      put(std::string_view("\\\""));
    } else if (element == "\\") {
      put(std::string_view("\\\\"));
    } else {
      put(element);
    }
  }
}

// `name` without half a double-byte character at its end.
std::string_view WithoutHalfCharacter(std::string_view name, unsigned code_page);

}  // namespace wfinfo
