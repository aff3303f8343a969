// Putting an honorific behind the name of an address.
#pragma once

#include <cstddef>
#include <string_view>

namespace wfinfo {

inline constexpr std::string_view kDefaultHonorific = "\x97\x6C";  // "sama"

// The first entry of `list` with `honorific` behind its name, written to `out` when it is not null; the
// return value is its length in bytes, 0 for a malformed or missing entry. No terminator is written.
//
//   Taro <t@x.jp>               Taro-sama <t@x.jp>
//   "Doe, John" <j@x.jp>        "Doe, John-sama" <j@x.jp>
//   Taro-sama <t@x.jp>          unchanged: the name ends in the honorific already
//   Taro                        Taro-sama: no address, so the entry is a name
//   t@x.jp, <t@x.jp>            t@x.jp; with `also_without_name` t-sama <t@x.jp>
std::size_t ComposeWithHonorific(std::string_view list, std::string_view honorific, bool also_without_name,
                                 char* out);

}  // namespace wfinfo
