#include "src/addresses/address_list.h"

namespace wfinfo {

AddressCount CountAddresses(std::string_view list) {
  AddressReader reader(list);
  const std::size_t entries = reader.CountRest();
  return {entries, reader.entry().error};
}

ListedAddress NthAddress(std::string_view list, std::size_t n) {
  AddressReader reader(list);
  for (;; --n) {
    if (!reader.Read()) return {{}, reader.entry().error};
    if (n == 0) return {reader.entry().text, AddressError::kNone};
  }
}

}  // namespace wfinfo
