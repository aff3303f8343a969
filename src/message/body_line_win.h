// A line of a mail's body as a result.
#pragma once

#include <string_view>

namespace wfinfo {

// A body line in the short-result buffer or a new block, in which the escapes lose the mark in their last
// byte. A new block is kept only when another one is kept already; else nobody ever frees it, and a text of
// it that a macro holds stays whatever it calls.
const char* ReturnBodyLine(std::string_view line);

}  // namespace wfinfo
