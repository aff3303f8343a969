// Paths as UTF-8 text, and back.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace wrenfold {

// As messages and macros show it.
std::string PathToUtf8(const std::filesystem::path& path);
std::filesystem::path PathFromUtf8(std::string_view utf8);

}  // namespace wrenfold
