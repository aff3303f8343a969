#include "host/base/whole_file.h"

#include <fstream>
#include <iterator>
#include <system_error>

namespace wrenfold {
namespace {

bool Write(const std::filesystem::path& file, std::string_view bytes, std::ios::openmode mode) {
  std::ofstream stream(file, std::ios::binary | mode);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  stream.close();
  return stream.good();
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
  std::ifstream stream(file, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  if (!stream.is_open() || stream.bad()) return std::nullopt;
  return bytes;
}

bool ReplaceFile(const std::filesystem::path& file, std::string_view bytes) {
  std::filesystem::path beside = file;
  beside += ".new";
  std::error_code error;
  const bool written = Write(beside, bytes, std::ios::trunc);
  if (written) std::filesystem::rename(beside, file, error);
  if (written && !error) return true;
  std::filesystem::remove(beside, error);
  return false;
}

bool AppendToFile(const std::filesystem::path& file, std::string_view bytes) {
  return Write(file, bytes, std::ios::app);
}

}  // namespace wrenfold
