#include "host/folders/folder_properties.h"

#include <system_error>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/base/whole_file.h"

namespace wrenfold {
namespace {

constexpr std::string_view kEscaped = "%[]";

std::string SectionOf(std::string_view folder) {
  std::string section;
  for (const char c : folder) {
    if (kEscaped.find(c) == kEscaped.npos) {
      section += c;
    } else {
      section += "%" + HexOf(c);
    }
  }
  return section;
}

std::string FolderOf(std::string_view section) {
  std::string folder;
  for (std::size_t i = 0; i < section.size(); ++i) {
    const bool escape = section[i] == '%' && i + 2 < section.size() && HexValue(section[i + 1]) >= 0 &&
                        HexValue(section[i + 2]) >= 0;
    folder +=
        escape ? static_cast<char>(HexValue(section[i + 1]) * 16 + HexValue(section[i + 2])) : section[i];
    if (escape) i += 2;
  }
  return folder;
}

}  // namespace

FolderProperties::FolderProperties(const std::filesystem::path& root) : file_(root / "folders.txt") {
  std::error_code error;
  const auto text = ReadWholeFile(file_);
  readable_ = text || !std::filesystem::exists(file_, error);
  settings_ = SettingsText(text.value_or(""));
}

std::vector<std::string> FolderProperties::Folders() const {
  std::vector<std::string> folders;
  for (const std::string& section : settings_.Sections()) folders.push_back(FolderOf(section));
  return folders;
}

std::string FolderProperties::Value(std::string_view folder, std::string_view key) const {
  return settings_.Value(SectionOf(folder), key).value_or("");
}

std::optional<std::string> FolderProperties::Set(std::string_view folder, std::string_view key,
                                                 std::string_view value, bool in_memory) {
  const std::string section = SectionOf(folder);
  SettingsText changed = settings_;
  if (!changed.HasSection(section)) {
    if (!SettingsText::CanBeSection(section)) return "a folder of this name keeps nothing";
    changed.AddSection(section);
  }
  changed.Set(section, key, value);
  return Keep(std::move(changed), in_memory);
}

std::optional<std::string> FolderProperties::Remove(std::string_view folder, bool in_memory) {
  if (!settings_.HasSection(SectionOf(folder))) return std::nullopt;
  SettingsText changed = settings_;
  changed.RemoveSection(SectionOf(folder));
  return Keep(std::move(changed), in_memory);
}

std::optional<std::string> FolderProperties::Keep(SettingsText changed, bool in_memory) {
  if (!in_memory && !readable_) return "cannot read " + PathToUtf8(file_);
  if (!in_memory && !ReplaceFile(file_, changed.Text())) return "cannot write " + PathToUtf8(file_);
  settings_ = std::move(changed);
  return std::nullopt;
}

}  // namespace wrenfold
