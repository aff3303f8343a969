// The state between two bytes of comma-separated text, as a byte loop steps through it and as blocks carry
// it over.
#pragma once

#include <cstdint>

#include "src/text/ascii.h"

namespace wfinfo::csv {

// At most one of the first three is set; none of them means inside a plain field.
struct Carry {
  std::uint64_t quoted = 0;       // all ones inside a quoted field
  std::uint64_t after_close = 0;  // 1 behind a quote that closes the field unless another quote follows
  std::uint64_t field_start = 1;  // 1 at the start of a field or of a line
  std::uint64_t after_cr = 0;     // 1 behind a CR that ended a line
};

// What a byte brings.
struct Step {
  bool starts_field;
  bool ends_line;
};

constexpr Step StepOver(Carry& carry, char byte) {
  const Carry before = carry;
  carry = {0, 0, 0, 0};
  if (before.quoted != 0) {
    carry.quoted = byte == '"' ? 0 : before.quoted;
    carry.after_close = byte == '"';
    return {false, false};
  }
  if (byte == '"' && (before.after_close | before.field_start) != 0) {
    carry.quoted = ~std::uint64_t{0};
    return {before.field_start != 0, false};
  }
  const bool ends_line = IsLineEnd(byte);
  carry.field_start = ends_line || byte == ',';
  carry.after_cr = byte == '\r';
  const bool stray = before.after_close != 0 && byte != ',';
  return {!ends_line && (before.field_start != 0 || stray), ends_line};
}

}  // namespace wfinfo::csv
