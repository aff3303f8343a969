#include "host/library/help_lines.h"

#include <cstddef>

namespace wrenfold {

std::string_view FirstSentence(std::string_view doc) {
  const std::size_t end = doc.find(". ");
  return end == std::string_view::npos ? doc : doc.substr(0, end + 1);
}

std::string FoundLine(std::string_view form, std::string_view doc) {
  return std::string(form) + "\n    " + std::string(FirstSentence(doc)) + "\n";
}

std::string ColumnLine(std::string_view form, std::string_view doc) {
  constexpr std::size_t kWidth = 34;  // of the first column
  std::string line = "  " + std::string(form);
  line.append(line.size() + 2 > kWidth ? 2 : kWidth - line.size(), ' ');
  return line.append(FirstSentence(doc)).append("\n");
}

}  // namespace wrenfold
