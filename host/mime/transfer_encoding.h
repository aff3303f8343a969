// Content transfer encodings. Broken input is decoded as far as it goes.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// Skips what is no base64 digit; the first "=" ends the data (what list servers append stands behind it).
std::string DecodeBase64(std::string_view text);

// A "=" that starts neither a hexadecimal byte nor a soft line break stays. With `is_word` (the Q encoding of
// header words) "_" is a blank.
std::string DecodeQuotedPrintable(std::string_view text, bool is_word);

// By the value of Content-Transfer-Encoding; anything else than the two above is identity.
std::string DecodeTransfer(std::string_view encoding, std::string_view body);

}  // namespace wrenfold
