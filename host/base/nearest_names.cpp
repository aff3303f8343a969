#include "host/base/nearest_names.h"

#include <algorithm>
#include <utility>

#include "host/base/ascii.h"

namespace wrenfold {
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (LowerAscii(a[i]) == LowerAscii(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row[b.size()];
}

std::vector<std::string_view> NearestNames(std::string_view name, std::span<const std::string_view> names,
                                           std::size_t most) {
  constexpr std::size_t kLongest = 64;  // a longer name is no slip of a finger
  if (name.size() > kLongest) return {};
  // A third of the letters may be wrong; a name that holds the other whole ranks behind those.
  const std::size_t allowed = std::max<std::size_t>(1, name.size() / 3);
  const std::string lowered = Lower(name);
  std::vector<std::pair<std::size_t, std::string_view>> found;
  for (const std::string_view candidate : names) {
    const std::size_t distance = EditDistance(name, candidate);
    const bool part = name.size() >= 3 && Lower(candidate).find(lowered) != std::string::npos;
    if (distance <= allowed) {
      found.emplace_back(distance, candidate);
    } else if (part) {
      found.emplace_back(kLongest + distance, candidate);
    }
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string_view> nearest;
  for (std::size_t i = 0; i < std::min(most, found.size()); ++i) nearest.push_back(found[i].second);
  return nearest;
}

std::string DidYouMean(std::string_view name, std::span<const std::string_view> names) {
  const std::vector<std::string_view> nearest = NearestNames(name, names);
  if (nearest.empty()) return "";
  std::string text = "; did you mean ";
  for (std::size_t i = 0; i < nearest.size(); ++i) {
    if (i > 0) text += i + 1 == nearest.size() ? " or " : ", ";
    text += nearest[i];
  }
  return text + "?";
}

}  // namespace wrenfold
