// Files read and written as a whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace wrenfold {

// The bytes of a file; nullopt when it cannot be read.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& file);

// At most the first `most` bytes of a file.
std::optional<std::string> ReadBeginning(const std::filesystem::path& file, std::size_t most);

// `most` bytes from `at` on, fewer at the end of the file.
std::optional<std::string> ReadBytes(const std::filesystem::path& file, std::uintmax_t at, std::size_t most);

// Makes the file, or gives it new contents. False on failure, which may leave it cut.
bool WriteWholeFile(const std::filesystem::path& file, std::string_view bytes);

// Where ReplaceFile writes before the file has its place: "a.eml.new".
std::filesystem::path BesideFile(const std::filesystem::path& file);

// Writes beside the file and then takes its place, so that a failure leaves the old one whole. False
// on failure. Two hosts do it one after the other.
bool ReplaceFile(const std::filesystem::path& file, std::string_view bytes);

// Adds to the end of a file, which is made when missing. False on failure; then the file is as it was.
bool AppendToFile(const std::filesystem::path& file, std::string_view bytes);

}  // namespace wrenfold
