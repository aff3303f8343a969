// Giving a file another name, on one volume: whole or not at all.
//
// std::filesystem::rename copies to another volume under the new name, where half of it lies while it is
// copied, and tells nothing when the old file cannot be removed.
#pragma once

#include <filesystem>
#include <system_error>

namespace wrenfold {

// Takes the place of a file that is there.
std::error_code RenameOver(const std::filesystem::path& from, const std::filesystem::path& to);

// Fails with std::errc::file_exists when there is one.
std::error_code RenameToNew(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace wrenfold
