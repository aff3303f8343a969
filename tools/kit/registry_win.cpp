#include "tools/kit/registry_win.h"

#include <algorithm>

#include "tools/kit/text_win.h"

namespace kit {
namespace {

constexpr DWORD kLongestName = 16384;  // of a value, in units
constexpr std::size_t kMostDifferences = 10;

HKEY RootOf(const RegistryPlace& place) { return place.machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

// Type and bytes as "1:0a0b".
std::string ValueText(DWORD type, const std::string& bytes) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text = std::to_string(type) + ":";
  for (const char byte : bytes) {
    (text += kDigits[static_cast<unsigned char>(byte) >> 4]) += kDigits[byte & 15];
  }
  return text;
}

std::string BytesOf(const std::string& text) {
  std::string bytes;
  for (std::size_t at = text.find(':') + 1; at + 1 < text.size(); at += 2) {
    bytes += static_cast<char>(std::stoi(text.substr(at, 2), nullptr, 16));
  }
  return bytes;
}

Json Values(HKEY key) {
  Json values = Json::Object();
  std::wstring name(kLongestName, L'\0');
  for (DWORD index = 0;; ++index) {
    DWORD name_size = kLongestName, type = 0, size = 0;
    if (RegEnumValueW(key, index, name.data(), &name_size, nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
      break;
    std::string bytes(size, '\0');
    const std::wstring own(name.data(), name_size);
    if (RegQueryValueExW(key, own.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size) ==
        ERROR_SUCCESS) {
      bytes.resize(size);
      values.With(Utf8(own), ValueText(type, bytes));
    }
  }
  return values;
}

std::vector<std::wstring> SubKeys(HKEY key) {
  std::vector<std::wstring> names;
  wchar_t name[256];
  for (DWORD index = 0;; ++index) {
    DWORD size = 256;
    if (RegEnumKeyExW(key, index, name, &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
      return names;
    names.emplace_back(name, size);
  }
}

Json TreeOf(HKEY root, const std::wstring& path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return {};
  Json keys = Json::Object();
  for (const std::wstring& name : SubKeys(key)) keys.With(Utf8(name), TreeOf(key, name));
  Json tree = Json::Object();
  tree.With("values", Values(key)).With("keys", std::move(keys));
  RegCloseKey(key);
  return tree;
}

bool RestoreValues(HKEY key, const Json& saved) {
  bool good = true;
  const Json present = Values(key);
  for (const auto& [name, value] : present.members) {
    if (saved[name].kind == Json::Kind::kNull)
      good &= RegDeleteValueW(key, Wide(name).c_str()) == ERROR_SUCCESS;
  }
  for (const auto& [name, value] : saved.members) {
    if (present[name].text == value.text) continue;
    const std::string bytes = BytesOf(value.text);
    good &= RegSetValueExW(key, Wide(name).c_str(), 0, static_cast<DWORD>(std::stoul(value.text)),
                           reinterpret_cast<const BYTE*>(bytes.data()),
                           static_cast<DWORD>(bytes.size())) == ERROR_SUCCESS;
  }
  return good;
}

bool Restore(HKEY root, const std::wstring& path, const Json& saved) {
  if (saved.kind == Json::Kind::kNull) {
    const LSTATUS status = RegDeleteTreeW(root, path.c_str());
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
  }
  HKEY key = nullptr;
  if (RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key, nullptr) !=
      ERROR_SUCCESS) {
    return false;
  }
  bool good = RestoreValues(key, saved["values"]);
  for (const std::wstring& name : SubKeys(key)) {
    if (saved["keys"][Utf8(name)].kind == Json::Kind::kNull)
      good &= RegDeleteTreeW(key, name.c_str()) == ERROR_SUCCESS;
  }
  for (const auto& [name, tree] : saved["keys"].members) good &= Restore(key, Wide(name), tree);
  RegCloseKey(key);
  return good;
}

void Compare(const Json& before, const Json& after, const std::string& path, bool empty_keys_count,
             std::vector<std::string>& found) {
  if (empty_keys_count && before.kind != after.kind) return found.push_back(path);
  for (const char* const part : {"values", "keys"}) {
    std::vector<std::string> names;
    for (const auto& [name, value] : before[part].members) names.push_back(name);
    for (const auto& [name, value] : after[part].members) names.push_back(name);
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    for (const std::string& name : names) {
      const Json& a = before[part][name];
      const Json& b = after[part][name];
      if (found.size() >= kMostDifferences) return;
      if (part[0] == 'k') {
        Compare(a, b, path + "\\" + name, empty_keys_count, found);
      } else if (a.text != b.text || a.kind != b.kind) {
        found.push_back(path + ", value \"" + name + "\"");
      }
    }
  }
}

}  // namespace

std::string NameOf(const RegistryPlace& place) {
  return (place.machine ? "HKEY_LOCAL_MACHINE\\" : "HKEY_CURRENT_USER\\") + Utf8(place.path);
}

Json SavedTree(const RegistryPlace& place) { return TreeOf(RootOf(place), place.path); }

bool RestoreTree(const RegistryPlace& place, const Json& saved) {
  // A key that is as it was is not opened for writing, which may not be allowed.
  const Json present = SavedTree(place);
  if (Differences(saved, present, true).empty()) return true;
  return Restore(RootOf(place), place.path, saved);
}

std::vector<std::string> Differences(const Json& before, const Json& after, bool empty_keys_count) {
  std::vector<std::string> found;
  Compare(before, after, "", empty_keys_count, found);
  return found;
}

}  // namespace kit
