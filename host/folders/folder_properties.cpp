#include "host/folders/folder_properties.h"

#include <system_error>

#include "host/base/ascii.h"
#include "host/files/file_hold.h"
#include "host/files/file_reasons.h"
#include "host/files/whole_file.h"

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
  settings_ = SettingsText(ReadWholeFile(file_).value_or(""));
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
  if (!SettingsText::CanBeSection(section)) return "a folder of this name keeps nothing";
  return Change(in_memory, [&](SettingsText& settings) {
    if (!settings.HasSection(section)) settings.AddSection(section);
    settings.Set(section, key, value);
  });
}

std::optional<std::string> FolderProperties::Remove(std::string_view folder, bool in_memory) {
  const std::string section = SectionOf(folder);
  if (!settings_.HasSection(section)) return std::nullopt;
  return Change(in_memory, [&](SettingsText& settings) { settings.RemoveSection(section); });
}

std::optional<std::string> FolderProperties::Change(bool in_memory,
                                                    const std::function<void(SettingsText&)>& change) {
  if (in_memory) return change(settings_), std::nullopt;
  const FileHold hold(file_);
  if (hold.failure()) return hold.failure();
  std::error_code error;
  const auto text = ReadWholeFile(file_);
  if (!text && std::filesystem::exists(file_, error)) return WhyUnreadable(file_);
  SettingsText changed(text.value_or(""));
  change(changed);
  const WriteOutcome outcome = ReplaceFile(file_, changed.Text());
  if (!outcome) return WhyUnwritable(file_, outcome.reason);
  settings_ = std::move(changed);
  return std::nullopt;
}

}  // namespace wrenfold
