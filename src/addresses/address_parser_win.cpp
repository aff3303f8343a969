#include "src/addresses/address_parser_win.h"

#include <cstring>

#include "src/addresses/address_entry.h"
#include "src/addresses/address_messages_win.h"

namespace wfinfo {

namespace {

// As much of a zero-terminated text as one entry can need: what stands in front of it, its bytes, a separator
// and the line break that may be a fold. A long list is not measured again for each of its entries.
std::string_view EntryWindow(const char* text) {
  const std::size_t blanks = std::strspn(text, " \t\r\n");
  return {text, blanks + strnlen(text + blanks, kEntryLimit + 4)};
}

}  // namespace

const char* ParseAddressEntry(const char* text, char* address_out, char* name_out, char* error_out,
                              int* flags_out, int* extra_out, unsigned code_page, int reserved,
                              int decode_words) {
  static_cast<void>(reserved);
  AddressParts parts;
  const AddressEntry entry = SplitAddressEntry(EntryWindow(text), &parts, {code_page, decode_words != 0});
  if (flags_out != nullptr) *flags_out = 0;
  if (extra_out != nullptr) *extra_out = 0;
  std::strcpy(address_out, parts.address);
  if (name_out != nullptr) std::strcpy(name_out, parts.name);
  if (error_out != nullptr) std::strcpy(error_out, Chosen(MessageOf(entry.error)));
  return entry.error == AddressError::kNone ? text + entry.next : nullptr;
}

}  // namespace wfinfo
