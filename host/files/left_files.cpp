#include "host/files/left_files.h"

#include <algorithm>
#include <cstddef>

#include "host/base/paths.h"

namespace wrenfold {

std::string ToldAsLeft(std::span<const std::filesystem::path> files) {
  constexpr std::size_t kNamed = 3;
  std::string text;
  for (std::size_t i = 0; i < std::min(files.size(), kNamed); ++i)
    text += (i > 0 ? ", " : "") + PathToUtf8(files[i]);
  if (files.empty()) return text;
  if (files.size() == 1)
    return text + " was left by a write that was interrupted: it is no mail; look into it, then delete it";
  if (files.size() > kNamed) text += " and " + std::to_string(files.size() - kNamed) + " more";
  return text +
         " were left by writes that were interrupted: they are no mails; look into them, then delete them";
}

}  // namespace wrenfold
