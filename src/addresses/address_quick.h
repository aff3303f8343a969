// The common address entry, understood as a whole: the bytes that matter become bit masks of 64 bytes, and a
// dozen operations on the masks say where the entry and its bracket end. No branch depends on what the entry
// looks like, so varied lists cost no mispredictions. Whatever the masks do not settle is refused, for the
// scanner to read.
//
// Understood: Shift-JIS entries of less than 64 bytes, bare or with one <...> at the end; with quotations,
// comments that do not nest, backslashes and double-byte characters. Refused among others: escapes, folds
// inside the entry, apostrophes in front, runs of quotes, quotes in comments and parentheses in quotes,
// everything malformed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace wfinfo {

struct QuickAddress {
  std::uint32_t end;   // length of the entry, without its separator
  std::uint32_t open;  // where "<" stands; `close` is then end - 1. Both are `end` when there is no bracket.
  std::uint32_t close;
};

struct AddressKernels {
  const char* name;
  // Looks at the entry that `text` begins with, without blanks in front; false when it is for the scanner.
  bool (*scan)(std::string_view text, QuickAddress* entry);
  // Counts entries of `list` from *at on, as far as they are understood; *at is then where the others begin.
  std::size_t (*count)(std::string_view list, std::size_t* at);
};

// The fastest set that this processor runs.
const AddressKernels& BestAddressKernels();

// All sets that this processor runs, slowest first: the first leaves everything to the scanner.
std::span<const AddressKernels* const> RunnableAddressKernels();

}  // namespace wfinfo
