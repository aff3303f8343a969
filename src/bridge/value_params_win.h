// Parameters that a macro may give as a number or as a text.
#pragma once

#include <string_view>

namespace wfinfo {

// The line width that `value` gives: the number itself, or the leading decimal digits of the text that a
// value above 9999 points to (no digits: 0). A value above 9999 that is no readable text is reported and
// gives 9999. Widths from 1 to 40 become 40.
long long WidthOf(long long value);

// A count: a value from -65535 to 65535 is the number itself; any other is the address of decimal digits. A
// text that cannot be read, does not begin with a digit or goes on behind its digits gives 0.
int ReadCountParam(long long value);

// `text` as a view, empty without a message when it is null or cannot be read.
std::string_view ReadableText(const char* text);

}  // namespace wfinfo
