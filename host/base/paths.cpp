#include "host/base/paths.h"

namespace wrenfold {

std::string PathToUtf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::filesystem::path PathFromUtf8(std::string_view utf8) { return std::u8string(utf8.begin(), utf8.end()); }

}  // namespace wrenfold
