// Links in the file system.
#pragma once

#include <filesystem>

namespace wrenfold {

// Whether a folder is only another name of one elsewhere: a symbolic link or, on Windows, a junction or a
// mounted volume. Folders that the system fills when they are looked into, as those of a cloud, are none.
bool IsLink(const std::filesystem::path& path);

}  // namespace wrenfold
