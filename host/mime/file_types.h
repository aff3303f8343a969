// MIME types of files by their names.
#pragma once

#include <string_view>

namespace wrenfold {

// "text/plain" and the like by the name's extension; "application/octet-stream" for any other.
std::string_view TypeOfFile(std::string_view name);

}  // namespace wrenfold
