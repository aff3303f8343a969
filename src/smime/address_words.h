// Addresses as the S/MIME family meets them: lists of recipients, lists of a certificate's addresses, the
// signer's address in a report, the address of a revocation list.
#pragma once

#include <cstddef>
#include <string_view>

namespace wfinfo::smime {

// Letters A to Z count as a to z; every other byte as itself.
bool EqualIgnoringCase(std::string_view a, std::string_view b);
bool StartsWithIgnoringCase(std::string_view text, std::string_view start);

// A recipient list is split at single blanks: "a  b" holds "a", "" and "b"; "" holds one empty item.
std::size_t CountRecipients(std::string_view list);
std::string_view RecipientAt(std::string_view list, std::size_t index);

// A certificate's addresses stand in one text, separated by ", ".

// Builds such a list in a buffer of `capacity` bytes (at least 8). An item that does not leave five bytes
// free behind it becomes ".." and ends the list.
class AddressListWriter {
 public:
  AddressListWriter(char* buffer, std::size_t capacity);
  void Add(std::string_view address);

 private:
  void Append(std::string_view text);

  char* buffer_;
  std::size_t limit_;
  std::size_t used_ = 0;
  bool ended_ = false;
};

// The list without its first address; "" when it has one only.
std::string_view FurtherAddresses(std::string_view list);

// True when an item of `list` begins with `sender` (letter case does not count) and the byte behind that is a
// control character, a blank, a comma or the end.
bool ListHoldsSender(std::string_view list, std::string_view sender);

// Where the signer's address begins, counted from the start of its label in a report: the length of the
// Japanese label with its blank. Used for the shorter English label too, so that an English address is read
// without its first character; kept on purpose.
inline constexpr std::size_t kSignerAddressOffset = 23;

// The signer's address in a verification report: from the offset behind the first `label` up to a byte of
// value 32 or less. "" without the label and for an address of 128 bytes or more.
std::string_view SignerAddressIn(std::string_view report, std::string_view label);

// True for "http:" in any letter case.
bool IsHttpUrl(std::string_view url);

}  // namespace wfinfo::smime
