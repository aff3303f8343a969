// Why a file cannot be read or written, in words for the user. Looked up after the failure: the file system
// may have changed meanwhile, so that the general reason is left.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace wrenfold {

// Our own words for the usual errors: "no such file or folder".
std::string ReasonOf(const std::error_code& error);

// "cannot read X: REASON", for a reason that is known.
std::string CannotRead(const std::filesystem::path& path, const std::string& reason);

// The same with what the system says of the file when it is opened once more.
std::string WhyUnreadable(const std::filesystem::path& file);

// "cannot write X: there is no folder Y"
std::string WhyUnwritable(const std::filesystem::path& file);

// Writes beside the file and takes its place. Returns why not, else nullopt.
std::optional<std::string> WriteSafely(const std::filesystem::path& file, std::string_view bytes);

}  // namespace wrenfold
