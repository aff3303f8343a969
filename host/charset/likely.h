// Which charset bytes of an unknown one are likely in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/charset/japanese.h"

namespace wrenfold {

// True when `bytes` are UTF-8 but for some broken bytes: at least `ratio` whole characters for each of them.
bool IsLikelyUtf8(std::string_view bytes, std::size_t ratio);

enum class Likely : std::uint8_t { kEucJp, kShiftJis, kWindows1252 };

// Of 8-bit bytes that are no UTF-8. `japanese` says that the text is known to be Japanese.
Likely LikelyCharset(std::string_view bytes, bool japanese, const JisTables& tables);

}  // namespace wrenfold
