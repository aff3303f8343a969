// Names for new files beside those that are there: "a.eml", "a (2).eml", "a (3).eml".
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>

namespace wrenfold {

// The same with a number behind its stem.
std::filesystem::path NumberedName(const std::filesystem::path& file, std::size_t number);

// `file`, or the same with a number from 2 on that no file there has.
std::filesystem::path FreeName(const std::filesystem::path& file);
// The same where more than files may take a name.
std::filesystem::path FreeName(const std::filesystem::path& file,
                               const std::function<bool(const std::filesystem::path&)>& is_taken);

}  // namespace wrenfold
