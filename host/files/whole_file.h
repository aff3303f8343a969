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

// Whether something was written; if not, `reason` says why in words: "no room is left".
struct WriteOutcome {
  bool done = true;
  std::string reason;
  explicit operator bool() const { return done; }
};

// Makes the file, or gives it new contents. A failure may leave it cut.
WriteOutcome WriteWholeFile(const std::filesystem::path& file, std::string_view bytes);

// Where ReplaceFile writes before the file has its place: "a.eml.new".
std::filesystem::path BesideFile(const std::filesystem::path& file);

// Writes beside the file and then takes its place, so that a failure leaves the old one whole. Two hosts do
// it one after the other.
WriteOutcome ReplaceFile(const std::filesystem::path& file, std::string_view bytes);

// Adds to the end of a file, which is made when missing. A failure leaves the file as it was.
WriteOutcome AppendToFile(const std::filesystem::path& file, std::string_view bytes);

}  // namespace wrenfold
