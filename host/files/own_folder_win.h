// The folder of wrenfold.exe, and wide texts as the portable half takes them.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// With its final backslash.
std::wstring OwnFolder();

// The same units: a wchar_t of Windows is one of UTF-16.
inline std::u16string_view Utf16(std::wstring_view wide) {
  return {reinterpret_cast<const char16_t*>(wide.data()), wide.size()};
}

}  // namespace wrenfold
