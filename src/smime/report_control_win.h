// The host's edit control that shows a verification report.
#pragma once

#include <windows.h>

#include <cstddef>

namespace wfinfo::smime {

// Adds `text` at the caret of the control. In English mode a text with the good mark goes there as UTF-16,
// which the host converts, so that the mark shows whatever the system's code page is; every other text goes
// as it is, marks included.
void AppendReport(HWND control, const char* text);

// The same for a printf-style text; at most 1023 bytes.
void AppendReportFormat(HWND control, const char* format, ...);

}  // namespace wfinfo::smime
