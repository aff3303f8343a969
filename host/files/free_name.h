// Names for new files beside those that are there: "a.eml", "a (2).eml", "a (3).eml".
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>

namespace wrenfold {

// The same with a number behind its stem.
std::filesystem::path NumberedName(const std::filesystem::path& file, std::size_t number);

// `file`, or the same with a number from 2 on that no file there has: "a (3).eml" for "a (2).eml" too.
std::filesystem::path FreeName(const std::filesystem::path& file);
// The same for the caller's own idea of what is taken. Whoever wants many names for one file keeps `used` for
// it, 0 at first: the last number in use, behind which the next one is looked for.
std::filesystem::path FreeName(const std::filesystem::path& file,
                               const std::function<bool(const std::filesystem::path&)>& taken);
std::filesystem::path FreeName(const std::filesystem::path& file,
                               const std::function<bool(const std::filesystem::path&)>& taken,
                               std::size_t& used);

}  // namespace wrenfold
