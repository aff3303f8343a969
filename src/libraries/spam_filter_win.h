// The host's spam filter, a plug-in with a table of functions.
#pragma once

namespace wfinfo {

// Calls the function whose address stands `table_offset` bytes into the filter's table with ten numbers. 0
// without a filter, or when nothing can be called there.
int CallSpamFilter(int table_offset, const int (&values)[10]);

// The text that the function at `table_offset` answers, "" without one.
const char* SpamFilterText(int table_offset);

}  // namespace wfinfo
