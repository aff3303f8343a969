#include "host/files/whole_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <istream>
#include <system_error>

#include "host/files/file_hold.h"
#include "host/files/file_reasons.h"
#include "host/files/renaming.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

// What a stream holds from here on; `size` is what is expected, and may be wrong: a file can grow meanwhile.
std::string Rest(std::istream& stream, std::size_t size) {
  constexpr std::size_t kMore = 64 * 1024;
  std::string bytes(size, '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(size));
  std::size_t read = static_cast<std::size_t>(stream.gcount());
  while (stream.good() && stream.peek() != std::char_traits<char>::eof()) {
    bytes.resize(read + kMore);
    stream.read(bytes.data() + read, kMore);
    read += static_cast<std::size_t>(stream.gcount());
  }
  bytes.resize(read);
  return bytes;
}

WriteOutcome Failed(const std::error_code& error) { return {false, ReasonOf(error)}; }

// What the C library was told by the system when it failed last.
std::error_code LastFileError() {
#ifdef _WIN32
  // errno knows "access denied" alone for a file that another program uses.
  if (_doserrno != 0) return {static_cast<int>(_doserrno), std::system_category()};
#endif
  return {errno, std::generic_category()};
}

void ForgetFileError() {
  errno = 0;
#ifdef _WIN32
  _doserrno = 0;
#endif
}

WriteOutcome Write(const fs::path& file, std::string_view bytes, std::ios::openmode mode) {
  ForgetFileError();
  std::ofstream stream(file, std::ios::binary | mode);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  stream.close();
  return stream.good() ? WriteOutcome() : Failed(LastFileError());
}

}  // namespace

std::optional<std::string> ReadWholeFile(const fs::path& file) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(file, error);
  if (error == std::errc::is_a_directory) return std::nullopt;
  std::ifstream stream(file, std::ios::binary);
  if (!stream.is_open()) return std::nullopt;
  std::string bytes = Rest(stream, error ? 0 : static_cast<std::size_t>(size));
  if (stream.bad()) return std::nullopt;
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

WriteOutcome WriteWholeFile(const fs::path& file, std::string_view bytes) {
  return Write(file, bytes, std::ios::trunc);
}

fs::path BesideFile(const fs::path& file) {
  fs::path beside = file;
  return beside += ".new";
}

WriteOutcome ReplaceFile(const fs::path& file, std::string_view bytes) {
  const FileHold hold(file);
  if (hold.failure()) return {false, *hold.failure()};
  const fs::path beside = BesideFile(file);
  WriteOutcome outcome = WriteWholeFile(beside, bytes);
  if (outcome) {
    const std::error_code error = RenameOver(beside, file);
    if (!error) return outcome;
    outcome = Failed(error);
  }
  std::error_code ignored;
  fs::remove(beside, ignored);
  return outcome;
}

WriteOutcome AppendToFile(const fs::path& file, std::string_view bytes) {
  const FileHold hold(file);
  if (hold.failure()) return {false, *hold.failure()};
  std::error_code error;
  const std::uintmax_t size = fs::file_size(file, error);
  const bool is_new = error == std::errc::no_such_file_or_directory;
  WriteOutcome outcome = Write(file, bytes, std::ios::app);
  if (outcome) return outcome;
  if (is_new) {
    fs::remove(file, error);
  } else if (!error) {
    fs::resize_file(file, size, error);
  }
  return outcome;
}

}  // namespace wrenfold
