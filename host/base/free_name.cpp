#include "host/base/free_name.h"

#include <string>
#include <system_error>

namespace wrenfold {

namespace fs = std::filesystem;

fs::path NumberedName(const fs::path& file, std::size_t number) {
  fs::path numbered = file.parent_path() / file.stem();
  numbered += " (" + std::to_string(number) + ")";
  return numbered += file.extension();
}

// Numbers in use mostly lie together, so the gap behind them is found by halving: thousands of mails of one
// date would ask the system millions of times.
fs::path FreeName(const fs::path& file) {
  return FreeName(file, [](const fs::path& name) {
    std::error_code error;
    return fs::exists(name, error);
  });
}

fs::path FreeName(const fs::path& file, const std::function<bool(const fs::path&)>& is_taken) {
  if (!is_taken(file)) return file;
  std::size_t used = 1;
  std::size_t free = 2;
  while (is_taken(NumberedName(file, free))) {
    used = free;
    free *= 2;
  }
  while (free - used > 1) {
    const std::size_t middle = used + (free - used) / 2;
    (is_taken(NumberedName(file, middle)) ? used : free) = middle;
  }
  return NumberedName(file, free);
}

}  // namespace wrenfold
