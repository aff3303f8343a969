// The mail list as a list box in the frame, and the list of a search result window: hidden like their
// parents, with a line of text for each mail. They are made when they are asked for first.
#pragma once

#include <windows.h>

#include "host/requests/host_state.h"

namespace wrenfold {

// The list of the current folder; null when none can be made. The left arrow key folds the thread of the open
// mail, the right one unfolds it.
HWND TitleList(HostState& state);
// Writes its lines anew, unless drawing is switched off or there is no list yet.
void DrawTitleList(HostState& state);

// Lines that it shows at a time.
constexpr int kTitleListLines = 8;
int TitleListTop(HostState& state);
// Scrolls it so that `line` is the first one, or the last ones show. False when there is no such line.
bool ScrollTitleList(HostState& state, std::size_t line);

// The list in a search result window, with the mails found; null without a window.
HWND GrepList(HostState& state);

}  // namespace wrenfold
