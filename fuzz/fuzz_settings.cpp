// Settings files. Of sections: what is set is read back, also from the file's text, and nothing else
// changes. Of the serving host: what is refused is told by its line. Fields, apart by zero bytes: a file, a
// section, a value.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "fuzz/demand.h"
#include "fuzz/input.h"
#include "host/base/ascii.h"
#include "host/base/settings_text.h"
#include "host/mapi/settings.h"

namespace {

using wrenfold::SettingsText;

constexpr std::string_view kKeys[] = {"a", "B", "szSignature"};

// What a file says of the keys: by section in its order, without one.
std::vector<std::string> Known(const SettingsText& settings, std::string_view left_out) {
  std::vector<std::string> known;
  for (const std::string& section : settings.Sections()) {
    if (wrenfold::EqualsIgnoringCase(section, left_out)) continue;
    known.push_back(section);
    for (const std::string_view key : kKeys) known.push_back(settings.Value(section, key).value_or("\0"));
  }
  return known;
}

// What holds of a file holds of its text.
SettingsText ReadAgain(const SettingsText& settings) {
  SettingsText again(settings.Text());
  Demand(again.Sections() == settings.Sections());
  Demand(again.Text() == settings.Text());
  return again;
}

void CheckSetting(const SettingsText& before, std::string_view section, std::string_view value) {
  for (const std::string_view key : kKeys) {
    SettingsText changed = before;
    changed.Set(section, key, value);
    const SettingsText again = ReadAgain(changed);
    Demand(Known(again, section) == Known(before, section));
    for (const std::string_view other : kKeys) {
      const auto expected = other == key ? std::optional(WithCrLf(value)) : before.Value(section, other);
      Demand(again.Value(section, other) == expected);
    }
  }
}

void CheckSections(SettingsText settings, std::string_view section, std::string_view value) {
  if (!SettingsText::CanBeSection(section)) return;
  const auto known = Known(settings, section);
  if (!settings.HasSection(section)) settings.AddSection(section);
  Demand(ReadAgain(settings).HasSection(section) && Known(settings, section) == known);
  CheckSetting(settings, section, value);
  const std::string other = std::string(section) + "2";
  if (!settings.HasSection(other)) {
    SettingsText renamed = settings;
    renamed.RenameSection(section, other);
    Demand(ReadAgain(renamed).HasSection(other));
    for (const std::string_view key : kKeys)
      Demand(renamed.Value(other, key) == settings.Value(section, key));
  }
  const std::size_t count = settings.Sections().size();
  settings.RemoveSection(section);
  Demand(ReadAgain(settings).Sections().size() == count - 1);
}

void CheckServing(std::string_view text) {
  const auto parsed = wrenfold::ParseMapiSettings(text);
  if (const auto* settings = std::get_if<wrenfold::MapiSettings>(&parsed)) {
    Demand(!settings->from.empty() && settings->slow_ms <= 999'999'999);
    return;
  }
  const std::string& wrong = std::get<std::string>(parsed);
  const auto lines = 1 + std::count_if(text.begin(), text.end(), wrenfold::IsLineEnd);
  Demand(wrong.starts_with("line "));
  const int line = std::atoi(wrong.c_str() + 5);
  Demand(line >= 1 && line <= lines);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view text = TakeField(input);
  const std::string_view section = TakeField(input);
  CheckServing(text);
  const SettingsText settings(text);
  ReadAgain(settings);
  for (const std::string& name : settings.Sections()) Demand(settings.HasSection(name));
  CheckSections(settings, section, input);
  return 0;
}
