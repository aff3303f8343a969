#include "host/files/file_names.h"

#include <algorithm>
#include <iterator>

namespace wrenfold {
namespace {

constexpr std::u16string_view kForbidden = u"<>:\"/\\|?*\x7F";
constexpr std::size_t kLongestExtension = 16;  // with its period; what is longer is no extension

constexpr std::u16string_view kDevices[] = {u"CON", u"PRN", u"AUX", u"NUL", u"CONIN$", u"CONOUT$", u"CLOCK$"};
constexpr std::u16string_view kNumberedDevices[] = {u"COM", u"LPT"};
constexpr std::u16string_view kDeviceDigits = u"0123456789\u00B9\u00B2\u00B3";

char16_t UpperAscii(char16_t unit) {
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - (u'a' - u'A')) : unit;
}

void TrimEnd(std::u16string& name) {
  while (!name.empty() && (name.back() == u'.' || name.back() == u' ')) name.pop_back();
}

// The first `length` units of `text`, one less when the last of them is half a character.
std::u16string_view Front(std::u16string_view text, std::size_t length) {
  if (length >= text.size()) return text;
  const bool half = length > 0 && (text[length - 1] & 0xFC00) == 0xD800;
  return text.substr(0, half ? length - 1 : length);
}

std::u16string Shortened(const std::u16string& name, std::size_t longest) {
  if (name.size() <= longest) return name;
  const std::size_t period = name.rfind(u'.');
  const std::size_t extension = period == name.npos ? 0 : name.size() - period;
  const bool keeps = extension > 0 && extension <= kLongestExtension && extension < longest;
  if (!keeps) return std::u16string(Front(name, longest));
  return std::u16string(Front(name, longest - extension)) + name.substr(period);
}

}  // namespace

std::u16string_view LastComponent(std::u16string_view path) {
  const std::size_t slash = path.find_last_of(u"/\\");
  return slash == path.npos ? path : path.substr(slash + 1);
}

bool IsDeviceName(std::u16string_view name) {
  std::u16string stem(name.substr(0, name.find(u'.')));
  TrimEnd(stem);
  std::ranges::transform(stem, stem.begin(), UpperAscii);
  if (std::ranges::find(kDevices, stem) != std::end(kDevices)) return true;
  if (stem.size() != 4 || kDeviceDigits.find(stem.back()) == kDeviceDigits.npos) return false;
  stem.pop_back();
  return std::ranges::find(kNumberedDevices, stem) != std::end(kNumberedDevices);
}

std::u16string CleanFileName(std::u16string_view name, std::size_t longest) {
  name.remove_prefix(std::min(name.find_first_not_of(u' '), name.size()));
  std::u16string clean(name);
  for (char16_t& unit : clean) {
    if (unit < 0x20 || kForbidden.find(unit) != kForbidden.npos) unit = u'_';
  }
  TrimEnd(clean);
  clean = Shortened(clean, longest);
  if (IsDeviceName(clean)) clean = Shortened(u'_' + clean, longest);
  TrimEnd(clean);
  return clean;
}

}  // namespace wrenfold
