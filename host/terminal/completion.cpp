#include "host/terminal/completion.h"

#include <algorithm>

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

constexpr std::size_t kMostShown = 60;

bool IsNameCharacter(char c) { return IsLetter(c) || IsDigit(c) || c == '_'; }

// Whether the end of `line` lies inside a text in double quotes.
bool IsInText(std::string_view line) {
  bool inside = false;
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (inside && line[at] == '\\') {
      ++at;
    } else if (line[at] == '"') {
      inside = !inside;
    }
  }
  return inside;
}

std::string_view NameAtEnd(std::string_view line) {
  std::size_t start = line.size();
  while (start > 0 && IsNameCharacter(line[start - 1])) --start;
  return line.substr(start);
}

bool AsksForHelp(std::string_view line) {
  const std::string_view trimmed = Trim(line);
  const std::string_view first = trimmed.substr(0, trimmed.find_first_of(" \t"));
  return trimmed.starts_with('?') || (EqualsIgnoringCase(first, "help") && first.size() < trimmed.size());
}

bool BeginsWith(std::string_view name, std::string_view start) {
  return name.size() >= start.size() && EqualsIgnoringCase(name.substr(0, start.size()), start);
}

// What all of them begin with.
std::string_view CommonStart(std::span<const std::string_view> names) {
  std::string_view common = names.front();
  for (const std::string_view name : names) {
    while (!BeginsWith(name, common)) common.remove_suffix(1);
  }
  return common;
}

}  // namespace

Completion CompleteName(std::string_view line, std::span<const std::string> names) {
  const std::string_view typed = NameAtEnd(line);
  if (typed.empty() || IsInText(line)) return {0, " ", {}};
  const bool help = AsksForHelp(line);
  std::vector<std::string_view> found;
  for (const std::string_view name : names) {
    if (BeginsWith(name, typed)) found.push_back(help ? name.substr(0, name.find('(')) : name);
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  if (found.empty()) return {};
  const std::string_view common = CommonStart(found);
  if (found.size() == 1 || common.size() > typed.size()) return {typed.size(), std::string(common), {}};
  return {0, "", {found.begin(), found.end()}};
}

std::string InColumns(std::span<const std::string> names, std::size_t width) {
  const std::size_t shown = std::min(names.size(), kMostShown);
  std::size_t longest = 1;
  for (const std::string& name : names.first(shown)) longest = std::max(longest, name.size() + 2);
  const std::size_t columns = std::max<std::size_t>(1, width / longest);
  std::string text;
  for (std::size_t i = 0; i < shown; ++i) {
    const bool ends_line = (i + 1) % columns == 0 || i + 1 == shown;
    text += names[i];
    text += ends_line ? "\n" : std::string(longest - names[i].size(), ' ');
  }
  if (shown < names.size()) text += "and " + std::to_string(names.size() - shown) + " more\n";
  return text;
}

}  // namespace wrenfold
