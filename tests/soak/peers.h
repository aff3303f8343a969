// What the peers of soak.py send.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace soak {

// Byte `at` of the body of number `n`: letters in a row. soak.py has the same.
constexpr char BodyByte(unsigned long long n, std::size_t at) {
  return static_cast<char>('a' + (n + at) % 26);
}

// True when `text` is the beginning of that body.
constexpr bool BeginsBody(std::string_view text, unsigned long long n) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != BodyByte(n, i)) return false;
  }
  return true;
}

}  // namespace soak
