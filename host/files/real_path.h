// One name for each file and folder, whichever of several it was called by.
#pragma once

#include <filesystem>

namespace wrenfold {

// The full path without links, "." and "..", as far as there is something; what is not there yet stands
// behind. On Windows symbolic links, junctions and drives that stand for folders (SUBST) are followed too.
std::filesystem::path RealPath(const std::filesystem::path& path);

}  // namespace wrenfold
