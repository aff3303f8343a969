#include "host/files/file_reasons.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include "host/base/paths.h"
#include "host/base/system_errors.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

struct Reason {
  std::errc code;
  const char* text;
};

// The system's own texts are in the user's language and code page, with a line end, or none at all under some
// C libraries; these are ours.
constexpr Reason kReasons[] = {
    {std::errc::no_such_file_or_directory, "no such file or folder"},
    {std::errc::not_a_directory, "no such file or folder"},
    {std::errc::permission_denied, "access denied"},
    {std::errc::operation_not_permitted, "access denied"},
    {std::errc::filename_too_long, "the name is too long"},
    {std::errc::no_space_on_device, "no room is left"},
    {std::errc::read_only_file_system, "the disk is write-protected"},
    {std::errc::file_exists, "it exists already"},
    {std::errc::is_a_directory, "a folder is in the way"},
    {std::errc::file_too_large, "the file would be too large"},
};

bool IsFolder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

}  // namespace

std::string CannotRead(const fs::path& path, const std::string& reason) {
  return "cannot read " + PathToUtf8(path) + ": " + reason;
}

std::string ReasonOf(const std::error_code& error) {
#ifdef _WIN32
  constexpr int kShared = 32, kLocked = 33;  // to the C library these are "access denied" too
  const bool is_in_use = error.value() == kShared || error.value() == kLocked;
  if (is_in_use && error.category() == std::system_category())
    return SystemReason(static_cast<unsigned long>(error.value()));
#endif
  for (const Reason& row : kReasons) {
    if (error == row.code) return row.text;
  }
  if (!error) return "the file cannot be opened";
#ifdef _WIN32
  if (error.category() == std::system_category())
    return SystemReason(static_cast<unsigned long>(error.value()));
#endif
  return error.message();
}

std::string ReasonUnreadable(const fs::path& file) {
  if (IsFolder(file)) return "it is a folder";
  errno = 0;
  const bool opens = std::ifstream(file, std::ios::binary).is_open();
  return ReasonOf(opens ? std::error_code() : std::error_code(errno, std::generic_category()));
}

std::string WhyUnreadable(const fs::path& file) {
  if (file.empty()) return "cannot read a file without a name";
  return CannotRead(file, ReasonUnreadable(file));
}

std::string CannotWrite(const fs::path& path, const std::string& reason) {
  return "cannot write " + PathToUtf8(path) + ": " + reason;
}

std::string WhyUnwritable(const fs::path& file, const std::string& reason) {
  if (file.empty()) return "cannot write a file without a name";
  if (IsFolder(file)) return CannotWrite(file, "it is a folder");
  const fs::path folder = file.parent_path();
  if (!folder.empty() && !IsFolder(folder))
    return CannotWrite(file, "there is no folder " + PathToUtf8(folder));
  return CannotWrite(file, reason.empty() ? "access denied, or no room is left" : reason);
}

std::optional<std::string> MakeFolders(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (IsFolder(folder)) return std::nullopt;
  const std::string begin = "cannot make the folder " + PathToUtf8(folder) + ": ";
  // A file may stand in its place, or in that of one above it.
  std::error_code ignored;
  for (fs::path at = folder; at.has_filename() && !IsFolder(at); at = at.parent_path()) {
    if (fs::exists(at, ignored)) return begin + "there is a file " + PathToUtf8(at);
  }
  return begin + ReasonOf(error);
}

}  // namespace wrenfold
