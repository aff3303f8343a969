// The viewer and the editor of HTML. Hidden like all windows of the small host; their text is what the HTML
// says without its tags.
#pragma once

#include <windows.h>

#include "host/requests/host_state.h"

namespace wrenfold {

// True while HTML is shown: the open mail is HTML, and HTML shows by itself.
bool ShowsHtml(HostState& state);

// The viewer while HTML is shown, else null: a window at the top level, or one in the frame, as
// `state.view` says.
HWND HtmlViewer(HostState& state);

// The editor while the mail being written is HTML, else null: a window in the outer view.
HWND HtmlEditor(HostState& state);

}  // namespace wrenfold
