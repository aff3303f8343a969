// The decoders that Charsets chooses from; for its own files and for tests.
#pragma once

#include <string>
#include <string_view>

#include "host/charset/charsets.h"

namespace wrenfold {

inline constexpr char16_t kReplacement = 0xFFFD;

// Value of a base64 digit, -1 for any other character.
constexpr int Base64Value(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  if (c == '+') return 62;
  return c == '/' ? 63 : -1;
}

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

// Row and cell of JIS X 0208 (0x21-0x7E each) as a code of code page 932; 0 outside the plane.
unsigned ShiftJisOfJis(unsigned row, unsigned cell);

// What the Japanese decoders need from the tables.
class JisTables {
 public:
  virtual ~JisTables() = default;
  virtual char16_t OfShiftJis(unsigned code) const = 0;               // U+FFFD when undefined
  virtual char16_t OfJis0212(unsigned row, unsigned cell) const = 0;  // 0x21-0x7E each
};

std::u16string DecodeIso2022Jp(std::string_view bytes, const JisTables& tables);
std::u16string DecodeEucJp(std::string_view bytes, const JisTables& tables);
std::u16string DecodeShiftJis(std::string_view bytes, const JisTables& tables);

// True when the bytes hold an ISO-2022 sequence that switches to or from Japanese.
bool HasIso2022Escape(std::string_view bytes);

}  // namespace wrenfold
