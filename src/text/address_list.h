// Walking whole address lists.
#pragma once

#include <cstddef>
#include <string_view>

namespace wfinfo {

// Entries of `list` up to its end or the first malformed entry. An empty entry between two separators counts.
std::size_t CountAddresses(std::string_view list);

// Entry `n` of `list`, counted from 0, as it stands there without its separator and surrounding blanks; a
// null view when there is none or one up to it is malformed.
std::string_view NthAddress(std::string_view list, std::size_t n);

}  // namespace wfinfo
