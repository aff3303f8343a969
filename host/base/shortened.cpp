#include "host/base/shortened.h"

namespace wrenfold {

std::string Shortened(std::string_view utf8, std::size_t most) {
  std::size_t characters = 0;
  for (std::size_t at = 0; at < utf8.size(); ++at) {
    const bool begins = (static_cast<unsigned char>(utf8[at]) & 0xC0) != 0x80;
    if (begins && characters++ == most) return std::string(utf8.substr(0, at)) + "\xE2\x80\xA6";
  }
  return std::string(utf8);
}

}  // namespace wrenfold
