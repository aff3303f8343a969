// The Japanese encodings that Charsets reads: ISO-2022-JP, EUC-JP and Shift-JIS.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

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
