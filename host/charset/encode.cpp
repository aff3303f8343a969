#include "host/charset/encode.h"

#include <map>

#include "host/charset/names.h"

namespace wrenfold {
namespace {

bool IsAscii(std::u16string_view text) {
  for (const char16_t unit : text) {
    if (unit >= 0x80) return false;
  }
  return true;
}

// The first code wins where several stand for one character.
using Codes = std::map<char16_t, std::string>;

void AddCode(Codes& codes, std::string_view name, std::string bytes, const Charsets& charsets) {
  const std::u16string wide = charsets.Decode(name, bytes);
  if (wide.size() == 1 && wide[0] >= 0x80 && wide[0] != 0xFFFD) codes.try_emplace(wide[0], std::move(bytes));
}

Codes CodesOf(std::string_view name, const Charsets& charsets) {
  Codes codes;
  for (unsigned byte = 0x80; byte <= 0xFF; ++byte) {
    AddCode(codes, name, std::string(1, static_cast<char>(byte)), charsets);
  }
  for (unsigned lead = 0x81; lead <= 0xFE; ++lead) {
    for (unsigned trail = 0x40; trail <= 0xFE; ++trail) {
      AddCode(codes, name, {static_cast<char>(lead), static_cast<char>(trail)}, charsets);
    }
  }
  return codes;
}

std::optional<std::string> WithCodes(std::u16string_view text, const Codes& codes) {
  std::string bytes;
  for (const char16_t unit : text) {
    if (unit < 0x80) {
      bytes += static_cast<char>(unit);
      continue;
    }
    const auto code = codes.find(unit);
    if (code == codes.end()) return std::nullopt;
    bytes += code->second;
  }
  return bytes;
}

// Row and cell of JIS X 0208 for a character of code page 932; "" for what lies outside the plane.
std::string JisCode(std::string_view page_932) {
  if (page_932.size() != 2) return "";
  const auto lead = static_cast<unsigned char>(page_932[0]);
  const auto trail = static_cast<unsigned char>(page_932[1]);
  const unsigned rows = (lead - (lead < 0xA0 ? 0x81U : 0xC1U)) * 2;
  const bool second = trail >= 0x9F;
  const unsigned row = rows + (second ? 1 : 0);
  const unsigned cell = second ? trail - 0x9FU : trail - 0x40U - (trail > 0x7F ? 1U : 0U);
  if (row >= 94) return "";
  return {static_cast<char>(row + 0x21), static_cast<char>(cell + 0x21)};
}

// ESC $ B and ESC ( B around what is not ASCII; each line begins and ends in ASCII.
std::optional<std::string> Iso2022Jp(std::u16string_view text, const Charsets& charsets) {
  std::string bytes;
  bool in_jis = false;
  for (const char16_t unit : text) {
    const bool is_jis = unit >= 0x80;
    if (is_jis != in_jis) bytes += is_jis ? "\x1B$B" : "\x1B(B";
    in_jis = is_jis;
    const std::string code =
        is_jis ? JisCode(charsets.ToHostText({&unit, 1})) : std::string(1, static_cast<char>(unit));
    if (code.empty()) return std::nullopt;
    bytes += code;
  }
  return in_jis ? bytes + "\x1B(B" : bytes;
}

}  // namespace

std::optional<std::string> EncodeText(std::string_view name, std::u16string_view text,
                                      const Charsets& charsets) {
  const CharsetName* const charset = FindCharset(name);
  if (charset == nullptr) return std::nullopt;
  if (charset->encoding == Encoding::kUtf8 || IsAscii(text)) return WideToUtf8(text);
  std::optional<std::string> bytes;
  if (charset->encoding == Encoding::kIso2022Jp) {
    bytes = Iso2022Jp(text, charsets);
  } else if (!IsUnicode(charset->encoding) && !charset->seven_bit) {
    bytes = WithCodes(text, CodesOf(name, charsets));
  }
  return bytes && charsets.Decode(name, *bytes) == text ? bytes : std::nullopt;
}

}  // namespace wrenfold
