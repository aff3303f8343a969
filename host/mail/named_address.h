// A name and an address as one entry of a list.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// `Name <address>`; the name in quotes when it holds what would end or divide an entry, such as a comma. Host
// text. Line ends become blanks; "" as the name gives the address alone.
std::string NamedAddress(std::string_view name, std::string_view address);

// Whether host text can stand between "<" and ">" as one address: outside a quoted part in front of its "@"
// it holds nothing that would end or divide the entry. Blanks around it do not count.
bool IsOneAddress(std::string_view address);

}  // namespace wrenfold
