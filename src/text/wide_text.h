// Host text to UTF-16 and back, exactly as the per-character conversions of the system give it.
#pragma once

#include <cstddef>
#include <string_view>

#include "src/text/code_page.h"

namespace wfinfo {

// True when the host calls a character full width: what bit 3 of an escape's last byte says.
bool IsFullWidth(char16_t unit);

// The unit that a whole escape (see StartsWithEscape) carries.
constexpr char16_t EscapedUnit(const char* escape) {
  const auto byte = [escape](int at) {
    return static_cast<unsigned>(static_cast<unsigned char>(escape[at]));
  };
  return static_cast<char16_t>((byte(1) & 0x7F) | (byte(3) & 1) << 7 | (byte(2) & 0x7F) << 8 |
                               (byte(3) & 2) << 14);
}

// Writes the four-byte escape of `unit` and returns the position behind it.
char* WriteEscape(char* out, char16_t unit);

// Converts host text to UTF-16. `out` has room for one unit for each byte. A byte of `host` that is zero is a
// character like others; behind the end stands, as far as lead bytes care, a zero. Returns the units written.
std::size_t HostToWide(std::string_view host, char16_t* out, const CodePage& code_page);

// Converts UTF-16 to host text; what code page 932 cannot hold becomes an escape. `out` has room for four
// bytes for each unit. Returns the bytes written.
std::size_t WideToHost(std::u16string_view wide, char* out, const CodePage& code_page);

}  // namespace wfinfo
