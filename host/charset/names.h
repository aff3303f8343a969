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
  kUtf16Any,  // in the order that its mark or its text tells
  kUtf32,
  kUtf32Big,
  kIso2022Jp,
  kShiftJis,
  kEucJp,
  kGb18030,    // where the system lacks the page: its two-byte characters are those of `instead`
  kHz,         // seven bits of the page, between "~{" and "~}"
  kIso2022Kr,  // seven bits of the page, between SO and SI
  kCodePage
};

constexpr bool IsUnicode(Encoding encoding) {
  return encoding >= Encoding::kUtf8 && encoding <= Encoding::kUtf32Big;
}

struct CharsetName {
  std::string_view name;  // its letters and digits, in lower case
  Encoding encoding;
  std::uint16_t code_page;  // for kCodePage and the three before it
  std::uint16_t instead;    // where the system lacks that page; 0 = Windows-1252
  bool seven_bit;           // bytes with bit 7 cannot come from this charset
};

// The row of `name`; nullptr for a name that is not known. Only letters and digits count, in any case; a year
// ("iso_8859-2:1987") and an RFC 2231 language ("utf-8*en") are ignored; "windows-", "ibm-", "ms" and "cp" in
// front of the number of a page mean the same, as does the number alone.
const CharsetName* FindCharset(std::string_view name);

// True for the name of a charset of eight bits that is none of Unicode's.
bool IsEightBitCharset(std::string_view name);

// True for no name, and for what mail programs write when they know none ("unknown-8bit").
bool NamesNoCharset(std::string_view name);

}  // namespace wrenfold
