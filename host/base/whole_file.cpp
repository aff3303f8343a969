#include "host/base/whole_file.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <system_error>

#include "host/base/file_hold.h"
#include "host/base/renaming.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

bool Write(const fs::path& file, std::string_view bytes, std::ios::openmode mode) {
  std::ofstream stream(file, std::ios::binary | mode);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  stream.close();
  return stream.good();
}

}  // namespace

std::optional<std::string> ReadWholeFile(const fs::path& file) {
  std::error_code error;
  if (fs::is_directory(file, error)) return std::nullopt;
  std::ifstream stream(file, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  if (!stream.is_open() || stream.bad()) return std::nullopt;
  return bytes;
}

std::optional<std::string> ReadBeginning(const fs::path& file, std::size_t most) {
  return ReadBytes(file, 0, most);
}

std::optional<std::string> ReadBytes(const fs::path& file, std::uintmax_t at, std::size_t most) {
  std::error_code error;
  const std::uintmax_t whole = fs::file_size(file, error);
  std::ifstream stream(file, std::ios::binary);
  if (error || !stream.is_open()) return std::nullopt;
  const std::uintmax_t rest = whole - std::min(at, whole);
  std::string bytes(static_cast<std::size_t>(std::min<std::uintmax_t>(most, rest)), '\0');
  stream.seekg(static_cast<std::streamoff>(at));
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (stream.bad()) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  return bytes;
}

bool WriteWholeFile(const fs::path& file, std::string_view bytes) {
  return Write(file, bytes, std::ios::trunc);
}

fs::path BesideFile(const fs::path& file) {
  fs::path beside = file;
  return beside += ".new";
}

bool ReplaceFile(const fs::path& file, std::string_view bytes) {
  const FileHold hold(file);
  if (hold.failure()) return false;
  const fs::path beside = BesideFile(file);
  if (WriteWholeFile(beside, bytes) && !RenameOver(beside, file)) return true;
  std::error_code error;
  fs::remove(beside, error);
  return false;
}

bool AppendToFile(const fs::path& file, std::string_view bytes) {
  const FileHold hold(file);
  if (hold.failure()) return false;
  std::error_code error;
  const std::uintmax_t size = fs::file_size(file, error);
  const bool is_new = error == std::errc::no_such_file_or_directory;
  if (Write(file, bytes, std::ios::app)) return true;
  if (is_new) {
    fs::remove(file, error);
  } else if (!error) {
    fs::resize_file(file, size, error);
  }
  return false;
}

}  // namespace wrenfold
