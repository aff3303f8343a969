// Files that are written whole or not at all.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace wrenfold {

// Writes beside the file and takes its place. Returns why that is not possible; then the file is as it was.
std::optional<std::string> WriteSafely(const std::filesystem::path& file, std::string_view bytes);

// Makes the folder if need be, writes beside the file and takes its place. Returns why that is not possible;
// then the file is as it was.
std::optional<std::string> SaveSafely(const std::filesystem::path& file, std::string_view bytes);

}  // namespace wrenfold
