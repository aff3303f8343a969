#include "host/mime/transfer_encoding.h"

#include <cstdint>

#include "host/base/ascii.h"
#include "host/base/base64.h"

namespace wrenfold {
namespace {

// Bytes behind a "=" that make it a soft line break: blanks and a line end, or blanks to the end of the text.
// npos when it is none.
std::size_t SoftBreakLength(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && IsBlank(text[at])) ++at;
  const LineLength rest = FirstLine(text.substr(at));
  return rest.text == 0 ? at + rest.with_end : text.npos;
}

}  // namespace

std::string DecodeBase64(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  std::uint32_t bits = 0;
  int count = 0;
  for (const char c : text) {
    if (c == '=') break;
    const int value = Base64Value(c);
    if (value < 0) continue;
    bits = bits << 6 | static_cast<std::uint32_t>(value);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 0xFF);
  }
  return bytes;
}

std::string DecodeQuotedPrintable(std::string_view text, bool is_word) {
  std::string bytes;
  bytes.reserve(text.size());
  while (!text.empty()) {
    std::size_t used = 1;
    if (text[0] != '=') {
      bytes += is_word && text[0] == '_' ? ' ' : text[0];
    } else if (text.size() > 2 && HexValue(text[1]) >= 0 && HexValue(text[2]) >= 0) {
      bytes += static_cast<char>(HexValue(text[1]) << 4 | HexValue(text[2]));
      used = 3;
    } else if (const std::size_t soft = SoftBreakLength(text.substr(1)); !is_word && soft != text.npos) {
      used = 1 + soft;
    } else {
      bytes += '=';
    }
    text.remove_prefix(used);
  }
  return bytes;
}

std::string DecodeTransfer(std::string_view encoding, std::string_view body) {
  const std::string name = Lower(Trim(encoding));
  if (name == "base64") return DecodeBase64(body);
  if (name == "quoted-printable") return DecodeQuotedPrintable(body, false);
  return std::string(body);
}

}  // namespace wrenfold
