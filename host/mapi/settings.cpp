#include "host/mapi/settings.h"

#include <algorithm>
#include <iterator>

#include "host/base/ascii.h"
#include "host/base/utf8_mark.h"

namespace wrenfold {
namespace {

struct Setting {
  std::string_view name;
  bool (*set)(MapiSettings& settings, std::string_view value);  // false: not a value for it
};

bool SetFlag(bool& flag, std::string_view value) {
  flag = value == "1";
  return value == "0" || value == "1";
}

constexpr Setting kSettings[] = {
    {"from", [](MapiSettings& s, std::string_view value) { return s.from = value, !value.empty(); }},
    {"slow",
     [](MapiSettings& s, std::string_view value) {
       const auto ms = ParseMilliseconds(value);
       return s.slow_ms = ms.value_or(0), ms.has_value();
     }},
    {"modal",
     [](MapiSettings& s, std::string_view value) {
       return s.modal_ms = ParseMilliseconds(value), s.modal_ms.has_value();
     }},
    {"deaf", [](MapiSettings& s, std::string_view value) { return SetFlag(s.deaf, value); }},
    {"die", [](MapiSettings& s, std::string_view value) { return SetFlag(s.die, value); }},
};

bool ApplyLine(MapiSettings& settings, std::string_view line) {
  if (line.empty() || line.starts_with('#')) return true;
  const std::size_t equals = line.find('=');
  if (equals == line.npos) return false;
  const auto* setting = std::ranges::find(kSettings, Trim(line.substr(0, equals)), &Setting::name);
  return setting != std::end(kSettings) && setting->set(settings, Trim(line.substr(equals + 1)));
}

}  // namespace

std::optional<unsigned> ParseMilliseconds(std::string_view text) {
  constexpr std::size_t kMostDigits = 9;
  if (text.empty() || text.size() > kMostDigits) return std::nullopt;
  unsigned value = 0;
  for (const char c : text) {
    if (!IsDigit(c)) return std::nullopt;
    value = value * 10 + static_cast<unsigned>(c - '0');
  }
  return value;
}

std::variant<MapiSettings, std::string> ParseMapiSettings(std::string_view utf8, MapiSettings settings) {
  utf8 = WithoutUtf8Mark(utf8);
  for (int number = 1; !utf8.empty(); ++number) {
    const LineLength length = FirstLine(utf8);
    const std::string_view line = Trim(utf8.substr(0, length.text));
    if (!ApplyLine(settings, line))
      return "line " + std::to_string(number) + " is no setting: " + std::string(line);
    utf8.remove_prefix(length.with_end);
  }
  return settings;
}

}  // namespace wrenfold
