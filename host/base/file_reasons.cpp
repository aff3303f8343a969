#include "host/base/file_reasons.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include "host/base/file_hold.h"
#include "host/base/paths.h"
#include "host/base/system_errors.h"
#include "host/base/whole_file.h"

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

std::string WhyUnreadable(const fs::path& file) {
  if (file.empty()) return "cannot read a file without a name";
  if (IsFolder(file)) return CannotRead(file, "it is a folder");
  errno = 0;
  const bool opens = std::ifstream(file, std::ios::binary).is_open();
  return CannotRead(file,
                    ReasonOf(opens ? std::error_code() : std::error_code(errno, std::generic_category())));
}

std::string WhyUnwritable(const fs::path& file) {
  const std::string begin = "cannot write " + PathToUtf8(file) + ": ";
  if (file.empty()) return "cannot write a file without a name";
  if (IsFolder(file)) return begin + "it is a folder";
  const fs::path folder = file.parent_path();
  if (!folder.empty() && !IsFolder(folder)) return begin + "there is no folder " + PathToUtf8(folder);
  return begin + "access denied, or no room is left";
}

std::optional<std::string> WriteSafely(const fs::path& file, std::string_view bytes) {
  const FileHold hold(file);
  if (hold.failure()) return hold.failure();
  return ReplaceFile(file, bytes) ? std::nullopt : std::optional(WhyUnwritable(file));
}

}  // namespace wrenfold
