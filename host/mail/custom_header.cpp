#include "host/mail/custom_header.h"

#include <algorithm>
#include <vector>

#include "host/base/ascii.h"
#include "host/mail/headers.h"

namespace wrenfold {
namespace {

constexpr std::string_view kUsual = "From, To, Cc, Subject, Date";

// No second byte of a double-byte character is a comma.
std::vector<std::string_view> Items(std::string_view spec) {
  std::vector<std::string_view> items;
  while (!spec.empty()) {
    const std::size_t comma = std::min(spec.find(','), spec.size());
    const std::string_view item = Trim(spec.substr(0, comma));
    if (!item.empty()) items.push_back(item);
    spec.remove_prefix(std::min(comma + 1, spec.size()));
  }
  return items;
}

std::string_view NameOf(const TextHeader& field) {
  return Trim(field.lines.substr(0, std::min(field.lines.find(':'), field.lines.size())));
}

bool Fits(std::string_view name, std::string_view pattern) {
  if (!pattern.ends_with('*')) return EqualsIgnoringCase(name, pattern);
  pattern.remove_suffix(1);
  return EqualsIgnoringCase(name.substr(0, pattern.size()), pattern);
}

struct Shown {
  std::vector<TextHeader> fields;
  std::vector<bool> used;
};

Shown Fields(std::string_view block) {
  Shown shown;
  std::size_t at = 0;
  while (const auto field = FieldAt(block, at)) {
    at += field->lines.size();
    if (field->lines.find(':') != field->lines.npos) shown.fields.push_back(*field);
  }
  shown.used.resize(shown.fields.size());
  return shown;
}

bool IsLeftOut(std::string_view name, const std::vector<std::string_view>& items) {
  return std::any_of(items.begin(), items.end(), [name](std::string_view item) {
    return item.starts_with('-') && Fits(name, Trim(item.substr(1)));
  });
}

// True when the item "Name" or "Name=Label" names the header.
bool Names(std::string_view item, std::string_view name) {
  return Fits(name, WithoutColon(Trim(item.substr(0, item.find('=')))));
}

bool IsNamed(std::string_view name, const std::vector<std::string_view>& items) {
  return std::any_of(items.begin(), items.end(),
                     [name](std::string_view item) { return item != "*" && Names(item, name); });
}

void Show(std::string& text, const TextHeader& field, std::string_view label) {
  text.append(label).append(": ").append(field.Value()).append("\r\n");
}

}  // namespace

std::string CustomHeaders(std::string_view spec, std::string_view block) {
  const std::vector<std::string_view> items = Items(Trim(spec).empty() ? kUsual : spec);
  Shown shown = Fields(block);
  std::string text;
  for (const std::string_view item : items) {
    if (item.starts_with('-')) continue;
    const std::size_t equals = item.find('=');
    for (std::size_t i = 0; i < shown.fields.size(); ++i) {
      const std::string_view name = NameOf(shown.fields[i]);
      const bool wanted = item == "*" ? !IsLeftOut(name, items) && !IsNamed(name, items) : Names(item, name);
      if (!wanted || shown.used[i]) continue;
      shown.used[i] = true;
      Show(text, shown.fields[i], equals == item.npos ? name : Trim(item.substr(equals + 1)));
    }
  }
  return text;
}

}  // namespace wrenfold
