#include "text/address_list.h"

#include "text/address_entry.h"

namespace wfinfo {

std::size_t CountAddresses(std::string_view list) { return AddressReader(list).CountRest(); }

std::string_view NthAddress(std::string_view list, std::size_t n) {
  AddressReader reader(list);
  for (;; --n) {
    if (!reader.Read()) return {};
    if (n == 0) return reader.entry().text;
  }
}

}  // namespace wfinfo
