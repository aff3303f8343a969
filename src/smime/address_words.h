// Addresses as the S/MIME family meets them: lists of recipients, lists of a certificate's addresses, the
// signer's address in a report, the address of a revocation list.
#pragma once

#include <cstddef>
#include <string_view>

namespace wfinfo::smime {

// True when the two are one address. Letters A to Z count as a to z; every other character as itself, the
// halves of a double-byte character too.
bool IsSameAddress(std::string_view a, std::string_view b);

// A recipient list is split at single blanks: "a  b" holds "a", "" and "b"; "" holds one empty item.
std::size_t CountRecipients(std::string_view list);
std::string_view RecipientAt(std::string_view list, std::size_t index);

// A certificate's addresses are shown in one text, separated by ", ". It is for reading: whether an address
// is one of the certificate's is never looked up in it.

// Builds such a list in a buffer of `capacity` bytes (at least 8). An item that does not leave five bytes
// free behind it becomes ".." and ends the list. A comma in an item becomes "?": an address may hold ", ",
// and what stands behind that would pass for an address of its own.
class AddressListWriter {
 public:
  AddressListWriter(char* buffer, std::size_t capacity);
  // False when the item is not in the list.
  bool Add(std::string_view address);

 private:
  void Append(std::string_view text);

  char* buffer_;
  std::size_t limit_;
  std::size_t used_ = 0;
  bool ended_ = false;
};

// The list without its first address; "" when it has one only.
std::string_view FurtherAddresses(std::string_view list);

// Where the signer's address begins, counted from the start of its label in a report: the length of the
// Japanese label with its blank. Used for the shorter English label too, so that an English address is read
// without its first character.
inline constexpr std::size_t kSignerAddressOffset = 23;

// The signer's address in a verification report: from the offset behind the first `label` that begins a line
// (names inside a line are a stranger's) up to a byte of value 32 or less. "" without the label and for an
// address of 128 bytes or more.
std::string_view SignerAddressIn(std::string_view report, std::string_view label);

// True for "http:" in any letter case.
bool IsHttpUrl(std::string_view url);

}  // namespace wfinfo::smime
