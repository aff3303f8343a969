// Which addresses are texts that this library returned and that the next request or result may end.
#pragma once

#include <cstddef>

namespace wfinfo {

// The last text that each hand-written text export returned, by the place of its row;
// see hand_exports_win.cpp.
inline constexpr std::size_t kMostHandExports = 512;
extern const char* g_lastTexts[kMostHandExports];

// True when `address` is such a text: in the short-result buffer, the kept block or the lent account record,
// the host's last text, a cached text of the account, or the start of an export's last text. A value that may
// as well be a number is known for a text by this alone.
bool IsLiveResult(const char* address);

}  // namespace wfinfo
