// One entry off the front of an address list: an address alone, or a display name and an address in brackets.
//
//   list    = entry *( separator entry )            separator = "," / ";"
//   entry   = [ name ] "<" address ">" / address    read up to a separator outside quotes, comments, brackets
//   quoted  = "..." / a run of quotes up to the mirrored run / '...' at the very start of the entry
//   comment = "(" ... ")", nested
//
//   taro@example.com                      address taro@example.com
//   "Doe, John" <john@example.com>        name "Doe, John", address john@example.com
//   Taro (Sales, Osaka) <taro@x.jp>; b@c  name Taro (Sales, Osaka), and a second entry b@c
//
// An entry also ends at the end of the text and at a line break that no blank follows (one that a blank
// follows is a fold and counts as a blank). Double-byte characters and escapes are stepped over whole: none
// of their bytes is ever taken for a delimiter. The text is only read.
#pragma once

#include <cstddef>
#include <string_view>

#include "src/addresses/address_bytes.h"
#include "src/text/code_page.h"

namespace wfinfo {

inline constexpr std::size_t kAddressRoom = 512;  // of an address or a display name, terminator included
inline constexpr std::size_t kEntryLimit = 1024;  // an entry has fewer bytes than this

enum class AddressError {
  kNone,
  kNoEntry,          // the list ends here
  kOpenSection,      // a quotation or comment does not close on its line
  kEntryTooLong,     // 1024 bytes or more
  kNameTooLong,      // 512 bytes or more
  kNoCommaBetween,   // two bracketed addresses in one entry
  kBracketMismatch,  // "<" without ">"
  kFullWidthComma,   // the double-byte comma behind ">"
  kNoComma,          // other text behind ">"
  kAddressTooLong,   // 512 bytes or more
};

struct AddressSyntax {
  unsigned code_page = kCodePageShiftJis;  // 65001: UTF-8; any other value: Shift-JIS
  bool decode_words = false;  // step over MIME encoded words as units, leave folds out of the parts
};

// An entry, as views into the list.
struct AddressEntry {
  AddressError error = AddressError::kNoEntry;
  std::string_view text;     // as it stands, without separator and surrounding blanks
  std::string_view name;     // as it stands, "" when there is none
  std::string_view address;  // without brackets; known too when only the text behind ">" is wrong
  std::size_t next = 0;      // where the next entry begins: behind the separator, else where the entry ended
};

// Reads the entry of `list` that begins at `at` (<= its size). name, address and next count only as far as
// `error` allows.
AddressEntry ScanAddressEntry(std::string_view list, std::size_t at, const AddressSyntax& syntax = {});

// Reads a list entry by entry: while (reader.Read()) use(reader.entry());
class AddressReader {
 public:
  // Begins at `at`, where an entry begins.
  explicit AddressReader(std::string_view list, std::size_t at = 0) : bytes_(list), at_(at) {}

  // Reads the next entry; false at the end of the list or at a malformed entry.
  bool Read();
  const AddressEntry& entry() const { return entry_; }
  // Where the next entry is read.
  std::size_t at() const { return at_; }
  // Reads on to the end or the first malformed entry and tells how many entries that were.
  std::size_t CountRest();

 private:
  AddressBytes bytes_;
  std::size_t at_ = 0;
  AddressEntry entry_;
};

// The parts of an entry as zero-terminated texts, the name normalised by QuoteDisplayName.
struct AddressParts {
  char address[kAddressRoom];
  char name[kAddressRoom];
};

// Reads the entry at the front of `list` into `parts`, which is cleared first.
AddressEntry SplitAddressEntry(std::string_view list, AddressParts* parts, const AddressSyntax& syntax = {});

}  // namespace wfinfo
