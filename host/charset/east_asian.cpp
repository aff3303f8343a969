#include "host/charset/east_asian.h"

#include "host/base/ascii.h"
#include "host/charset/unicode.h"

namespace wrenfold {
namespace {

unsigned Value(char byte) { return static_cast<unsigned char>(byte); }
bool IsLead(char byte) { return Value(byte) >= 0x81 && Value(byte) <= 0xFE; }
bool IsDecimal(char byte) { return byte >= '0' && byte <= '9'; }

// Where the system lacks even this page, the bytes' ASCII is left.
std::u16string OfPage(std::string_view bytes, unsigned page, const CodePageConverter& pages) {
  if (auto wide = pages.ToWide(page, bytes)) return *std::move(wide);
  std::u16string wide;
  for (const char byte : bytes) wide += Value(byte) < 0x80 ? static_cast<char16_t>(byte) : kReplacement;
  return wide;
}

bool IsFourByte(std::string_view text) {
  return text.size() >= 4 && IsLead(text[0]) && IsDecimal(text[1]) && IsLead(text[2]) && IsDecimal(text[3]);
}

// 90 30 81 30 is U+10000, and every code behind it the next character.
char32_t OfFourBytes(std::string_view code) {
  if (Value(code[0]) < 0x90) return kReplacement;
  const unsigned high = (Value(code[0]) - 0x90) * 10 + (Value(code[1]) - '0');
  const unsigned value = 0x10000 + (high * 126 + (Value(code[2]) - 0x81)) * 10 + (Value(code[3]) - '0');
  return value <= 0x10FFFF ? value : kReplacement;
}

char WithBit7(char byte) { return static_cast<char>(Value(byte) | 0x80); }
bool IsPair(std::string_view text) {
  return text.size() >= 2 && text[0] > 0x20 && text[0] < 0x7F && text[1] > 0x20 && text[1] < 0x7F;
}

}  // namespace

std::u16string DecodeGb18030(std::string_view bytes, unsigned page, const CodePageConverter& pages) {
  std::u16string wide;
  std::size_t run = 0;  // of ASCII and two-byte characters
  while (run < bytes.size()) {
    const std::string_view rest = bytes.substr(run);
    if (!IsFourByte(rest)) {
      run += IsLead(rest[0]) && rest.size() > 1 && Value(rest[1]) >= 0x40 ? 2 : 1;
      continue;
    }
    wide += OfPage(bytes.substr(0, run), page, pages);
    AppendCodePoint(wide, OfFourBytes(rest));
    bytes.remove_prefix(run + 4);
    run = 0;
  }
  return wide + OfPage(bytes, page, pages);
}

std::u16string DecodeHz(std::string_view bytes, unsigned page, const CodePageConverter& pages) {
  std::string eight_bit;
  bool chinese = false;
  while (!bytes.empty()) {
    std::size_t used = 2;
    if (IsLineEnd(bytes[0])) chinese = false;
    if (bytes.starts_with(chinese ? "~}" : "~{")) {
      chinese = !chinese;
    } else if (chinese && IsPair(bytes)) {
      eight_bit += WithBit7(bytes[0]);
      eight_bit += WithBit7(bytes[1]);
    } else if (!chinese && bytes.starts_with("~~")) {
      eight_bit += '~';
    } else if (!chinese && bytes[0] == '~' && bytes.size() > 1 && IsLineEnd(bytes[1])) {
      used = bytes.starts_with("~\r\n") ? 3 : 2;
    } else {
      eight_bit += bytes[0];
      used = 1;
    }
    bytes.remove_prefix(used);
  }
  return OfPage(eight_bit, page, pages);
}

std::u16string DecodeIso2022Kr(std::string_view bytes, unsigned page, const CodePageConverter& pages) {
  constexpr std::string_view kDesignation = "\x1B$)C";
  std::string eight_bit;
  bool korean = false;
  while (!bytes.empty()) {
    std::size_t used = 1;
    if (bytes.starts_with(kDesignation)) {
      used = kDesignation.size();
    } else if (bytes[0] == '\x0E' || bytes[0] == '\x0F') {
      korean = bytes[0] == '\x0E';
    } else if (korean && IsPair(bytes)) {
      eight_bit += WithBit7(bytes[0]);
      eight_bit += WithBit7(bytes[1]);
      used = 2;
    } else {
      if (IsLineEnd(bytes[0])) korean = false;
      eight_bit += bytes[0];
    }
    bytes.remove_prefix(used);
  }
  return OfPage(eight_bit, page, pages);
}

}  // namespace wrenfold
