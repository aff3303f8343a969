#include "host/base/settings_text.h"

#include "host/base/ascii.h"
#include "host/base/utf8_mark.h"

namespace wrenfold {
namespace {

// The name in "[name]"; empty for any other line.
std::string_view SectionOf(std::string_view line) {
  line = Trim(line);
  if (!line.starts_with('[') || !line.ends_with(']')) return {};
  return Trim(line.substr(1, line.size() - 2));
}

bool IsComment(std::string_view line) {
  line = Trim(line);
  return line.starts_with('#') || line.starts_with(';');
}

const char* BlankWord(char blank) { return blank == '\t' ? "\\t" : "\\s"; }

std::string Escaped(std::string_view value) {
  std::string escaped;
  while (!value.empty()) {
    const std::size_t line_end = value.starts_with("\r\n") ? 2 : IsLineEnd(value[0]) ? 1 : 0;
    if (line_end > 0) {
      escaped += "\\n";
    } else {
      escaped += value[0] == '\\' ? "\\\\" : std::string(1, value[0]);
    }
    value.remove_prefix(line_end > 0 ? line_end : 1);
  }
  // A reader trims blanks off both ends.
  if (!escaped.empty() && IsBlank(escaped.back()))
    escaped.replace(escaped.size() - 1, 1, BlankWord(escaped.back()));
  if (!escaped.empty() && IsBlank(escaped.front())) escaped.replace(0, 1, BlankWord(escaped.front()));
  return escaped;
}

std::string Unescaped(std::string_view text) {
  std::string value;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      value += text[i];
      continue;
    }
    switch (const char letter = text[++i]) {
      case 'n':
        value += "\r\n";
        break;
      case 's':
        value += ' ';
        break;
      case 't':
        value += '\t';
        break;
      default:
        value += letter;
    }
  }
  return value;
}

}  // namespace

SettingsText::SettingsText(std::string_view text) {
  text = WithoutUtf8Mark(text);
  while (!text.empty()) {
    const LineLength length = FirstLine(text);
    lines_.emplace_back(text.substr(0, length.text));
    text.remove_prefix(length.with_end);
  }
}

std::vector<std::string> SettingsText::Sections() const {
  std::vector<std::string> sections;
  for (const std::string& line : lines_) {
    const std::string_view section = SectionOf(line);
    if (!section.empty()) sections.emplace_back(section);
  }
  return sections;
}

std::optional<std::size_t> SettingsText::FindSection(std::string_view section) const {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const std::string_view found = SectionOf(lines_[i]);
    if (!found.empty() && EqualsIgnoringCase(found, section)) return i;
  }
  return std::nullopt;
}

std::optional<std::size_t> SettingsText::FindKey(std::size_t section_line, std::string_view key,
                                                 std::size_t* end) const {
  *end = section_line + 1;
  for (std::size_t i = section_line + 1; i < lines_.size() && SectionOf(lines_[i]).empty(); ++i) {
    if (!Trim(lines_[i]).empty()) *end = i + 1;
    const std::size_t equals = lines_[i].find('=');
    if (equals == std::string::npos || IsComment(lines_[i])) continue;
    if (EqualsIgnoringCase(Trim(std::string_view(lines_[i]).substr(0, equals)), key)) return i;
  }
  return std::nullopt;
}

std::optional<std::string> SettingsText::Value(std::string_view section, std::string_view key) const {
  const auto at = FindSection(section);
  std::size_t end = 0;
  const auto line = at ? FindKey(*at, key, &end) : std::nullopt;
  if (!line) return std::nullopt;
  const std::string_view text = lines_[*line];
  return Unescaped(Trim(text.substr(text.find('=') + 1)));
}

std::vector<LineComplaint> SettingsText::Complaints() const {
  std::vector<LineComplaint> complaints;
  bool in_section = false;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const std::string_view line = Trim(lines_[i]);
    const bool is_section = !SectionOf(line).empty();
    in_section = in_section || is_section;
    if (is_section || line.empty() || IsComment(line)) continue;
    const char* why = nullptr;
    if (line.starts_with('[') && line.find('=') == line.npos) {
      why = "a section is a name in brackets, [name]";
    } else if (Trim(line.substr(0, line.find('='))).empty() || line.find('=') == line.npos) {
      why = "it is neither [section] nor key = value";
    } else if (!in_section) {
      why = "it stands in front of the first [section]";
    }
    if (why != nullptr) complaints.push_back({i + 1, why});
  }
  return complaints;
}

bool SettingsText::CanBeSection(std::string_view name) {
  return !name.empty() && Trim(name) == name && name.find_first_of("[]\r\n") == name.npos;
}

void SettingsText::AddSection(std::string_view section) {
  if (!lines_.empty() && !Trim(lines_.back()).empty()) lines_.emplace_back();
  lines_.push_back("[" + std::string(section) + "]");
}

void SettingsText::RenameSection(std::string_view section, std::string_view name) {
  if (const auto at = FindSection(section)) lines_[*at] = "[" + std::string(name) + "]";
}

void SettingsText::RemoveSection(std::string_view section) {
  const auto at = FindSection(section);
  if (!at) return;
  std::size_t end = *at + 1;
  while (end < lines_.size() && SectionOf(lines_[end]).empty()) ++end;
  lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(*at),
               lines_.begin() + static_cast<std::ptrdiff_t>(end));
}

void SettingsText::Set(std::string_view section, std::string_view key, std::string_view value) {
  const auto at = FindSection(section);
  if (!at) return;
  std::size_t end = 0;
  const auto found = FindKey(*at, key, &end);
  std::string line = std::string(key) + " = " + Escaped(value);
  if (found) {
    lines_[*found] = std::move(line);
  } else {
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(end), std::move(line));
  }
}

std::string SettingsText::Text() const {
  std::string text;
  for (const std::string& line : lines_) text += line + "\r\n";
  return text;
}

}  // namespace wrenfold
