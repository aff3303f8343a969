// The Unicode transfer forms: UTF-8, UTF-7, UTF-16.
#include "host/charset/unicode.h"

#include <cstdint>

#include "host/base/base64.h"
#include "host/charset/charsets.h"

namespace wrenfold {
namespace {

constexpr char16_t kByteOrderMark = 0xFEFF;

struct Utf8Shape {
  unsigned char mask;  // bits of the lead byte that tell the shape
  unsigned char pattern;
  std::size_t length;
  char32_t least;  // smaller values are overlong
};

constexpr Utf8Shape kUtf8Shapes[] = {
    {0x80, 0x00, 1, 0x0}, {0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}};

struct CodePoint {
  char32_t value = kReplacement;
  std::size_t length = 1;
  bool valid = false;
};

CodePoint NextUtf8(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  for (const Utf8Shape& shape : kUtf8Shapes) {
    if ((lead & shape.mask) != shape.pattern) continue;
    if (text.size() < shape.length) return {};
    char32_t value = lead & static_cast<unsigned char>(~shape.mask);
    for (std::size_t i = 1; i < shape.length; ++i) {
      const auto next = static_cast<unsigned char>(text[i]);
      if ((next & 0xC0) != 0x80) return {};
      value = value << 6 | (next & 0x3F);
    }
    const bool surrogate = value >= 0xD800 && value < 0xE000;
    if (value < shape.least || value > 0x10FFFF || surrogate) return {};
    return {value, shape.length, true};
  }
  return {};
}

void AppendUtf8(std::string& out, char32_t value) {
  if (value < 0x80) {
    out += static_cast<char>(value);
    return;
  }
  const int tails = value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
  constexpr unsigned char kLead[] = {0, 0xC0, 0xE0, 0xF0};
  out += static_cast<char>(kLead[tails] | (value >> (6 * tails)));
  for (int i = tails - 1; i >= 0; --i) out += static_cast<char>(0x80 | ((value >> (6 * i)) & 0x3F));
}

}  // namespace

void AppendCodePoint(std::u16string& out, char32_t value) {
  if (value < 0x10000) {
    out += static_cast<char16_t>(value);
    return;
  }
  out += static_cast<char16_t>(0xD800 + ((value - 0x10000) >> 10));
  out += static_cast<char16_t>(0xDC00 + ((value - 0x10000) & 0x3FF));
}

std::u16string Utf8ToWide(std::string_view utf8) {
  std::u16string wide;
  wide.reserve(utf8.size());
  while (!utf8.empty()) {
    const CodePoint point = NextUtf8(utf8);
    AppendCodePoint(wide, point.value);
    utf8.remove_prefix(point.length);
  }
  return wide;
}

bool IsValidUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const CodePoint point = NextUtf8(bytes);
    if (!point.valid) return false;
    bytes.remove_prefix(point.length);
  }
  return true;
}

Utf8Count CountUtf8(std::string_view bytes) {
  Utf8Count count;
  while (!bytes.empty()) {
    const CodePoint point = NextUtf8(bytes);
    if (!point.valid) ++count.broken;
    if (point.length > 1) ++count.characters;
    bytes.remove_prefix(point.length);
  }
  return count;
}

std::string WideToUtf8(std::u16string_view wide) {
  std::string utf8;
  for (std::size_t i = 0; i < wide.size(); ++i) {
    const char16_t unit = wide[i];
    const bool pair = unit >= 0xD800 && unit < 0xDC00 && i + 1 < wide.size() && wide[i + 1] >= 0xDC00 &&
                      wide[i + 1] < 0xE000;
    if (pair) {
      AppendUtf8(utf8, 0x10000 + ((unit - 0xD800u) << 10) + (wide[++i] - 0xDC00u));
    } else {
      AppendUtf8(utf8, unit >= 0xD800 && unit < 0xE000 ? kReplacement : unit);
    }
  }
  return utf8;
}

// "Hi +ZeVnLIqe-!" : a run of modified base64 between "+" and the first other character; a "-" there belongs
// to the run, and "+-" is a plus.
std::u16string DecodeUtf7(std::string_view bytes) {
  std::u16string wide;
  for (std::size_t i = 0; i < bytes.size();) {
    if (bytes[i] != '+') {
      const auto byte = static_cast<unsigned char>(bytes[i++]);
      wide += byte < 0x80 ? static_cast<char16_t>(byte) : kReplacement;
      continue;
    }
    if (++i < bytes.size() && bytes[i] == '-') wide += u'+';
    std::uint32_t bits = 0;
    int count = 0;
    for (int value; i < bytes.size() && (value = Base64Value(bytes[i])) >= 0; ++i) {
      bits = bits << 6 | static_cast<std::uint32_t>(value);
      count += 6;
      if (count < 16) continue;
      count -= 16;
      wide += static_cast<char16_t>(bits >> count);
    }
    if (i < bytes.size() && bytes[i] == '-') ++i;
  }
  return wide;
}

// A byte order mark wins over `big_endian`; none is text, wherever it stands (joined words have one each). An
// odd last byte becomes U+FFFD.
std::u16string DecodeUtf16(std::string_view bytes, bool big_endian) {
  if (bytes.starts_with("\xFF\xFE")) big_endian = false;
  if (bytes.starts_with("\xFE\xFF")) big_endian = true;
  std::u16string wide;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    wide += static_cast<char16_t>(big_endian ? first << 8 | second : second << 8 | first);
  }
  if (bytes.size() % 2 != 0) wide += kReplacement;
  std::erase(wide, kByteOrderMark);
  return wide;
}

// Bytes behind the last four become one U+FFFD.
std::u16string DecodeUtf32(std::string_view bytes, bool big_endian) {
  using std::string_view_literals::operator""sv;
  if (bytes.starts_with("\xFF\xFE\0\0"sv)) big_endian = false;
  if (bytes.starts_with("\0\0\xFE\xFF"sv)) big_endian = true;
  std::u16string wide;
  for (; bytes.size() >= 4; bytes.remove_prefix(4)) {
    char32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      value = value << 8 | static_cast<unsigned char>(bytes[big_endian ? i : 3 - i]);
    }
    const bool valid = value <= 0x10FFFF && (value < 0xD800 || value >= 0xE000);
    AppendCodePoint(wide, valid ? value : kReplacement);
  }
  if (!bytes.empty()) wide += kReplacement;
  std::erase(wide, kByteOrderMark);
  return wide;
}

// Latin letters, blanks and line ends have the high byte 0, kana and the punctuation of Chinese and Japanese
// 0x30. RFC 2781 says big-endian where the text does not tell.
bool LooksLittleEndian(std::string_view bytes) {
  std::size_t big = 0;
  std::size_t little = 0;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    if (bytes[i] == 0 || bytes[i] == 0x30) ++big;
    if (bytes[i + 1] == 0 || bytes[i + 1] == 0x30) ++little;
  }
  return little > big;
}

}  // namespace wrenfold
