// Why a file cannot be read or written, in words for the user. Looked up after the failure: the file system
// may have changed meanwhile, so that the general reason is left.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace wrenfold {

// Our own words for the usual errors: "no such file or folder".
std::string ReasonOf(const std::error_code& error);

// "cannot read X: REASON", for a reason that is known.
std::string CannotRead(const std::filesystem::path& path, const std::string& reason);

// What the system says of the file when it is opened once more: "it is a folder"; and as a sentence.
std::string ReasonUnreadable(const std::filesystem::path& file);
std::string WhyUnreadable(const std::filesystem::path& file);

// "cannot write X: REASON", for a reason that is known.
std::string CannotWrite(const std::filesystem::path& path, const std::string& reason);

// "cannot write X: there is no folder Y"; else `reason`, when it is known.
std::string WhyUnwritable(const std::filesystem::path& file, const std::string& reason = "");

// Makes the folder, with those above it, if need be. Returns why there is none then: "cannot make the
// folder X: there is a file Y".
std::optional<std::string> MakeFolders(const std::filesystem::path& folder);

}  // namespace wrenfold
