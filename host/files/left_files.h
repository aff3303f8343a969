// Files that a program which was ended in the middle of writing left beside those that it wrote.
#pragma once

#include <filesystem>
#include <span>
#include <string>

namespace wrenfold {

// One line for all of them, with what to do: "a.eml.new was left by a write that was interrupted: ...". The
// first three are named. "" for none.
std::string ToldAsLeft(std::span<const std::filesystem::path> files);

}  // namespace wrenfold
