// A settings file of sections, changed line by line so that comments and unknown lines stay as they are.
//
//   # comment                      ("#" or ";" at the start of a line)
//   [local]
//   szSecondPop3Server = pop.example.com
//   szSignature = -- \nAlice       ("\n" is a line end, "\s" a blank and "\t" a tab at an end of the value,
//                                   "\\" a "\")
//
// Names of sections and keys are compared without regard to the case of ASCII letters. Of sections with the
// same name, and of keys with the same name in one section, the first counts. Everything here is UTF-8.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/line_complaint.h"

namespace wrenfold {

class SettingsText {
 public:
  explicit SettingsText(std::string_view text = "");

  std::vector<std::string> Sections() const;
  bool HasSection(std::string_view section) const { return FindSection(section).has_value(); }
  // The value with its escapes undone: line ends are CR LF.
  std::optional<std::string> Value(std::string_view section, std::string_view key) const;

  // The lines that mean nothing, in their order.
  std::vector<LineComplaint> Complaints() const;

  // True when `name` can be a section: not empty, no line end, no "]", no blank at its ends.
  static bool CanBeSection(std::string_view name);
  void AddSection(std::string_view section);
  void RenameSection(std::string_view section, std::string_view name);
  // Takes the section out with all its lines, comments included; nothing without such a section.
  void RemoveSection(std::string_view section);
  // Changes the key's line, or adds one behind the last line of the section, which must exist.
  void Set(std::string_view section, std::string_view key, std::string_view value);

  // The whole file, its lines ending in CR LF.
  std::string Text() const;

 private:
  std::optional<std::size_t> FindSection(std::string_view section) const;
  // The line of `key` among the lines of a section; `end` receives the line behind its last one that is
  // not empty.
  std::optional<std::size_t> FindKey(std::size_t section_line, std::string_view key, std::size_t* end) const;

  std::vector<std::string> lines_;
};

}  // namespace wrenfold
