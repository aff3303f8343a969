// Code page 932 for native tests, fuzz targets and benchmarks: the C library's iconv in the place of Windows.
// It differs from Windows in a few characters, which does not matter where only the walk over the text is
// looked at.
#pragma once

#include <iconv.h>

#include <cstddef>

#include "src/text/code_page.h"

namespace wfinfo_test {

inline std::size_t Convert(const char* to, const char* from, const char* input, std::size_t size,
                           char* output, std::size_t room) {
  const iconv_t converter = iconv_open(to, from);
  if (converter == reinterpret_cast<iconv_t>(-1)) __builtin_trap();
  char* in = const_cast<char*>(input);
  char* out = output;
  std::size_t left = room;
  const std::size_t result = iconv(converter, &in, &size, &out, &left);
  iconv_close(converter);
  return result == static_cast<std::size_t>(-1) ? 0 : room - left;
}

inline bool IconvIsPair(const char* bytes) {
  char units[4];
  return Convert("UTF-16LE", "CP932", bytes, 2, units, sizeof units) == 2;
}

inline int IconvToWide(const char* bytes, int length, char16_t* units) {
  const std::size_t size = Convert("UTF-16LE", "CP932", bytes, static_cast<std::size_t>(length),
                                   reinterpret_cast<char*>(units), 4);
  return static_cast<int>(size / 2);
}

inline int IconvToHost(char16_t unit, char* bytes, bool* default_used) {
  const std::size_t size = Convert("CP932", "UTF-16LE", reinterpret_cast<const char*>(&unit), 2, bytes, 4);
  *default_used = size == 0;
  return size == 0 ? 1 : static_cast<int>(size);
}

inline constexpr wfinfo::CharacterCalls kIconvCalls = {&IconvToWide, &IconvIsPair, &IconvToHost};

inline const wfinfo::CodePage& IconvCodePage() {
  static wfinfo::CodePagePages pages{};
  static const wfinfo::CodePage code_page(kIconvCalls, pages);
  return code_page;
}

}  // namespace wfinfo_test
