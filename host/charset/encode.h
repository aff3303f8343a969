// UTF-16 to the character set that a mail is to be written in.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/charset/charsets.h"

namespace wrenfold {

// `text` in the charset `name`; nullopt when the charset does not hold all of it, or is none of one or two
// bytes a character, ISO-2022-JP or UTF-8. What comes out reads back as what went in.
std::optional<std::string> EncodeText(std::string_view name, std::u16string_view text,
                                      const Charsets& charsets = SystemCharsets());

}  // namespace wrenfold
