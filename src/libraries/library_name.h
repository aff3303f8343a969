// Names of libraries as macros give them.
#pragma once

#include <string_view>

namespace wfinfo {

// True for a backslash in host text that is no second byte of a double-byte character: the name has a folder.
bool HasBackslash(std::string_view name);

}  // namespace wfinfo
