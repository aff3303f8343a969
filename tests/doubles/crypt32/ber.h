// Reading BER and writing DER, as far as messages need it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ber {

using Bytes = std::string;

// One element. `content` is what stands between its header and its end.
struct Element {
  unsigned tag = 0;  // the identifier byte; 0 when nothing could be read
  std::string_view whole;
  std::string_view content;

  explicit operator bool() const { return tag != 0; }
  // The elements inside, in order; empty when they cannot be read.
  std::vector<Element> Children() const;
  // The bytes of a string that may come in pieces.
  Bytes Joined() const;
};

// The first element of `bytes`; definite and indefinite lengths.
Element First(std::string_view bytes);

Bytes Write(unsigned tag, const Bytes& content);
// An object identifier's content bytes, from its dotted form.
Bytes Oid(const char* dotted);

}  // namespace ber
