// Shift-JIS: whether a text is it.
#pragma once

#include <string_view>

#include "src/text/code_page.h"

namespace wfinfo {

// The Shift-JIS test: all bytes form characters of code page 932, and rare ones (lead byte from 0x99 on) are
// at most twice as many as common ones. An empty text passes.
bool LooksLikeShiftJis(std::string_view text, const CodePage& code_page);

}  // namespace wfinfo
