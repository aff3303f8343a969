#include "host/base/file_hold.h"

#include <map>
#include <system_error>

#include "host/base/paths.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

std::string NameOf(const fs::path& file) {
  std::error_code error;
  fs::path whole = fs::weakly_canonical(fs::absolute(file, error), error);
  if (error) whole = fs::absolute(file, error);
  whole = whole.lexically_normal();
  return PathToUtf8(whole.has_filename() ? whole : whole.parent_path());
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
