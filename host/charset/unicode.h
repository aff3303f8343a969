// The forms of Unicode that Charsets reads, and code points.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wrenfold {

inline constexpr char16_t kReplacement = 0xFFFD;

void AppendCodePoint(std::u16string& out, char32_t value);
std::u16string DecodeUtf7(std::string_view bytes);
std::u16string DecodeUtf16(std::string_view bytes, bool big_endian);
std::u16string DecodeUtf32(std::string_view bytes, bool big_endian);

// Whether UTF-16 without a mark is more likely little-endian: by the high bytes that most texts share.
bool LooksLittleEndian(std::string_view bytes);

// How much of `bytes` is UTF-8.
struct Utf8Count {
  std::size_t characters = 0;  // of more than one byte, well-formed
  std::size_t broken = 0;      // bytes that belong to none
};
Utf8Count CountUtf8(std::string_view bytes);

}  // namespace wrenfold
