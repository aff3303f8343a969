#include "host/files/free_name.h"

#include <algorithm>
#include <string>
#include <system_error>

namespace wrenfold {

namespace fs = std::filesystem;

fs::path NumberedName(const fs::path& file, std::size_t number) {
  fs::path numbered = file.parent_path() / file.stem();
  numbered += " (" + std::to_string(number) + ")";
  return numbered += file.extension();
}

namespace {

struct Numbered {
  fs::path file;  // without its number
  std::size_t number = 1;
};

// "a (2).eml" is the second "a.eml". A longer number is a year or the like, which tells of the mail.
Numbered TakeApart(const fs::path& file) {
  constexpr std::size_t kMostDigits = 3;
  const fs::path stem_path = file.stem();
  const fs::path::string_type& stem = stem_path.native();
  const std::size_t open = stem.rfind('(');
  if (stem.empty() || stem.back() != ')' || open == stem.npos || open < 2 || stem[open - 1] != ' ')
    return {file};
  const std::size_t digits = stem.size() - open - 2;
  std::size_t number = 0;
  for (std::size_t i = open + 1; i + 1 < stem.size(); ++i) {
    if (stem[i] < '0' || stem[i] > '9') return {file};
    number = number * 10 + static_cast<std::size_t>(stem[i] - '0');
  }
  if (digits == 0 || digits > kMostDigits || stem[open + 1] == '0' || number < 2) return {file};
  fs::path base = file.parent_path() / stem.substr(0, open - 1);
  base += file.extension();
  return {base, number};
}

}  // namespace

// Numbers in use mostly lie together, so the gap behind them is found by halving: thousands of mails of one
// date would ask the system millions of times.
fs::path FreeName(const fs::path& file, const std::function<bool(const fs::path&)>& taken,
                  std::size_t& used) {
  const Numbered numbered = TakeApart(file);
  const bool first = used == 0;
  used = std::max(used, numbered.number);
  if (first && !taken(file)) return file;
  std::size_t free = used + 1;
  while (taken(NumberedName(numbered.file, free))) {
    used = free;
    free *= 2;
  }
  while (free - used > 1) {
    const std::size_t middle = used + (free - used) / 2;
    (taken(NumberedName(numbered.file, middle)) ? used : free) = middle;
  }
  return NumberedName(numbered.file, used = free);
}

fs::path FreeName(const fs::path& file, const std::function<bool(const fs::path&)>& taken) {
  std::size_t used = 0;
  return FreeName(file, taken, used);
}

fs::path FreeName(const fs::path& file) {
  return FreeName(file, [](const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error);
  });
}

}  // namespace wrenfold
