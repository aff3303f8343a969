// Text files of unknown encoding as host text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/charset/charsets.h"

namespace wrenfold {

// The first `limit` bytes of a file, without the beginning of a character that is cut there:
//
//   FF FE ...      UTF-16, little-endian
//   FE FF ...      UTF-16, big-endian
//   EF BB BF ...   UTF-8
//   else UTF-8 when the bytes are valid as such, not all ASCII and without escapes of host text;
//   else host text as it stands
//
// The marks are left out. A zero character ends the text, since host texts cannot hold it.
std::string HostTextOfFile(std::string_view bytes, std::size_t limit, const Charsets& charsets);

}  // namespace wrenfold
