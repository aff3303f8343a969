#include "host/files/file_hold.h"

#include <map>
#include <system_error>

#include "host/base/paths.h"
#include "host/files/real_path.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

// A file is not opened, which could keep its holder from replacing it: its folder's real name counts, and a
// link in its place is replaced itself.
std::string NameOf(const fs::path& file) {
  std::error_code error;
  if (fs::is_directory(file, error)) return PathToUtf8(RealPath(file));
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
  return PathToUtf8(RealPath(folder) / file.filename());
}

}  // namespace

FileHold::FileHold(const std::vector<fs::path>& files, std::chrono::milliseconds wait) {
  std::map<std::string, fs::path> by_name;  // the order in which every host takes them
  for (const fs::path& file : files) by_name.emplace(NameOf(file), file);
  for (const auto& [name, file] : by_name) {
    if (void* held = TakeName(name, wait)) {
      held_.push_back(held);
      continue;
    }
    failure_ = "another program is writing " + PathToUtf8(file);
    GiveAll();
    return;
  }
}

FileHold::~FileHold() { GiveAll(); }

void FileHold::GiveAll() {
  while (!held_.empty()) {
    GiveName(held_.back());
    held_.pop_back();
  }
}

}  // namespace wrenfold
