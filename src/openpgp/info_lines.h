// The messages of an OpenPGP program as a macro gets to see them.
#pragma once

#include <cstddef>

namespace wfinfo {

// Takes all lines that name one of the temporary files out of the zero-terminated `text`, in place, each with
// its line end (CR LF, CR or LF). Returns the length that is left.
std::size_t RemoveTemporaryFileLines(char* text);

}  // namespace wfinfo
