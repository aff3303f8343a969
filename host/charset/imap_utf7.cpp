#include "host/charset/imap_utf7.h"

#include <cstddef>
#include <cstdint>

namespace wrenfold {
namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+,";

constexpr bool IsDirect(char16_t unit) { return unit >= 0x20 && unit <= 0x7E; }

constexpr bool IsHigh(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool IsLow(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

std::string Shifted(const std::u16string& units) {
  std::string text = "&";
  std::uint32_t bits = 0;  // those not written yet, in the lower `count`
  unsigned count = 0;
  for (const char16_t unit : units) {
    bits = (bits << 16) | unit;
    for (count += 16; count >= 6; count -= 6) text += kDigits[(bits >> (count - 6)) & 0x3F];
  }
  if (count > 0) text += kDigits[(bits << (6 - count)) & 0x3F];
  return text + '-';
}

// `text` with U+FFFD for each half of a character that has no other half.
std::u16string Whole(std::u16string_view text) {
  std::u16string whole(text);
  for (std::size_t i = 0; i < whole.size(); ++i) {
    if (IsHigh(whole[i]) && i + 1 < whole.size() && IsLow(whole[i + 1])) {
      ++i;
    } else if (IsHigh(whole[i]) || IsLow(whole[i])) {
      whole[i] = u'\uFFFD';
    }
  }
  return whole;
}

// The units of a shift without its "&" and "-".
std::optional<std::u16string> Units(std::string_view digits) {
  std::u16string units;
  std::uint32_t bits = 0;
  unsigned count = 0;
  for (const char digit : digits) {
    const std::size_t value = kDigits.find(digit);
    if (value == kDigits.npos) return std::nullopt;
    bits = (bits << 6) | static_cast<std::uint32_t>(value);
    count += 6;
    if (count < 16) continue;
    count -= 16;
    units += static_cast<char16_t>((bits >> count) & 0xFFFF);
  }
  const bool rest_is_zero = (bits & ((1u << count) - 1)) == 0;
  return count < 6 && rest_is_zero && Whole(units) == units ? std::optional(units) : std::nullopt;
}

}  // namespace

std::string ToImapUtf7(std::u16string_view name) {
  std::string encoded;
  for (std::size_t at = 0; at < name.size();) {
    if (IsDirect(name[at])) {
      encoded += static_cast<char>(name[at]);
      if (name[at++] == u'&') encoded += '-';
      continue;
    }
    std::size_t end = at;
    while (end < name.size() && !IsDirect(name[end])) ++end;
    encoded += Shifted(Whole(name.substr(at, end - at)));
    at = end;
  }
  return encoded;
}

std::optional<std::u16string> FromImapUtf7(std::string_view encoded) {
  std::u16string name;
  while (!encoded.empty()) {
    const char c = encoded[0];
    if (c != '&') {
      if (c < 0x20 || c > 0x7E) return std::nullopt;
      name += static_cast<char16_t>(c);
      encoded.remove_prefix(1);
      continue;
    }
    const std::size_t end = encoded.find('-');
    if (end == encoded.npos) return std::nullopt;
    const auto units = Units(encoded.substr(1, end - 1));
    if (!units) return std::nullopt;
    name += end == 1 ? u"&" : *units;
    encoded.remove_prefix(end + 1);
  }
  return name;
}

}  // namespace wrenfold
