// Chinese and Korean charsets over a code page of two-byte characters: 936 (GBK), 949 (Unified Hangul).
#pragma once

#include <string>
#include <string_view>

#include "host/charset/charsets.h"

namespace wrenfold {

// GB18030 where the system has no such page. Four-byte characters above U+FFFF are worked out; those below
// need a table that only the system has, and become U+FFFD.
std::u16string DecodeGb18030(std::string_view bytes, unsigned page, const CodePageConverter& pages);

// ab~{<:Ky2;R*~}cd : pairs without bit 7 between "~{" and "~}" or the line's end; "~~" is "~", "~" at a
// line's end joins it to the next.
std::u16string DecodeHz(std::string_view bytes, unsigned page, const CodePageConverter& pages);

// ESC $ ) C once; pairs without bit 7 between SO and SI or the line's end.
std::u16string DecodeIso2022Kr(std::string_view bytes, unsigned page, const CodePageConverter& pages);

}  // namespace wrenfold
