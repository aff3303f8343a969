// Digits of base64.
#pragma once

namespace wrenfold {

// Value of a base64 digit, -1 for any other character.
constexpr int Base64Value(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  if (c == '+') return 62;
  return c == '/' ? 63 : -1;
}

}  // namespace wrenfold
