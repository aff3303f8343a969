// Header values: folds and encoded words (RFC 2047).
#pragma once

#include <string>
#include <string_view>

#include "host/charset/charsets.h"

namespace wrenfold {

// A header value with its RFC 2047 words decoded. Folds stay, as CR LF and the blanks behind them, except
// between two adjacent words. `declared` is the charset to try for raw 8-bit text. With `is_address_list` a
// decoded word that would change the list's structure (a comma in a name) is put in quotes.
std::u16string DecodeHeaderValue(std::string_view value, std::string_view declared, bool is_address_list,
                                 const Charsets& charsets);

}  // namespace wrenfold
