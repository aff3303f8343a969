// The code page tables of Windows.
#include <windows.h>

#include <algorithm>

#include "host/charset/charsets.h"
#include "host/charset/unicode.h"

namespace wrenfold {
namespace {

// Converts all of `bytes` or nothing. No result means that some character is not defined.
std::optional<std::u16string> Exact(unsigned code_page, std::string_view bytes) {
  const int length = static_cast<int>(bytes.size());
  const int units = MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, bytes.data(), length, nullptr, 0);
  if (units <= 0) return std::nullopt;
  std::u16string wide(static_cast<std::size_t>(units), u'\0');
  MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, bytes.data(), length,
                      reinterpret_cast<wchar_t*>(wide.data()), units);
  return wide;
}

// Character by character, longest first (four bytes in GB 18030), U+FFFD for one byte that begins none.
std::u16string Piecewise(unsigned code_page, std::string_view bytes) {
  std::u16string wide;
  while (!bytes.empty()) {
    std::size_t length = IsDBCSLeadByteEx(code_page, static_cast<BYTE>(bytes[0])) ? 2 : 1;
    if (code_page == 54936 && (bytes[0] & 0x80) != 0) length = 4;
    std::optional<std::u16string> unit;
    for (length = std::min(length, bytes.size()); length > 0; --length) {
      unit = Exact(code_page, bytes.substr(0, length));
      if (unit) break;
    }
    wide += unit.value_or(std::u16string(1, kReplacement));
    bytes.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return wide;
}

class WindowsCodePages final : public CodePageConverter {
 public:
  std::optional<std::u16string> ToWide(unsigned code_page, std::string_view bytes) const override {
    if (!IsValidCodePage(code_page)) return std::nullopt;
    constexpr std::size_t kPiece = 1 << 20;  // MultiByteToWideChar counts in int
    if (bytes.size() <= kPiece) {
      if (auto wide = Exact(code_page, bytes)) return wide;
    }
    return Piecewise(code_page, bytes);
  }
};

}  // namespace

const CodePageConverter& SystemCodePages() {
  static const WindowsCodePages pages;
  return pages;
}

}  // namespace wrenfold
