// The character set names of mails.
#pragma once

#include <cstdint>
#include <string_view>

namespace wrenfold {

enum class Encoding : std::uint8_t {
  kWindows1252,
  kUtf8,
  kUtf7,
  kUtf16,
  kUtf16Big,
  kIso2022Jp,
  kShiftJis,
  kEucJp,
  kCodePage
};

struct CharsetName {
  std::string_view name;  // lower case
  Encoding encoding;
  std::uint16_t code_page;  // for kCodePage
  std::uint16_t instead;    // where the system lacks that page; 0 = Windows-1252
  bool seven_bit;           // bytes with bit 7 cannot come from this charset
};

// The row of `name`; nullptr for a name that is not known. Any case; blanks, quotes and an RFC 2231 language
// ("utf-8*en") are ignored.
const CharsetName* FindCharset(std::string_view name);

}  // namespace wrenfold
