// The windows with search results.
#pragma once

namespace wfinfo {

// Closes the search result window, with `all` one after the other until the host names none. False when
// there is none or one does not close.
bool CloseGrepWindows(bool all);

}  // namespace wfinfo
