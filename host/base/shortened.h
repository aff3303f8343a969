// Names and texts of the user, as messages repeat them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wrenfold {

// `utf8`, of a longer text the first `most` characters and a "…".
std::string Shortened(std::string_view utf8, std::size_t most = 60);

}  // namespace wrenfold
