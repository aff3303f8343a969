// The accounts of the small host: sections of a settings file (settings_text.h) whose keys are those of the
// account record. One record is lent at a time.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings_text.h"

namespace wrenfold {

class AccountStore {
 public:
  // The accounts of `file`; a missing file holds none, and is made when the first account is. Returns why the
  // file cannot be used.
  std::optional<std::string> Open(const std::filesystem::path& file);

  // Names (host text) in the order of the file.
  std::vector<std::string> Names() const;
  // Text `key` of the account as host text, "" when it has none.
  std::string Value(std::string_view name, std::string_view key) const;

  // Adds an account without settings and writes the file; false when the name is in use or cannot be one.
  bool Create(std::string_view name);

  // A copy of the account's record, valid until Save, Release or the next Lend; null without such an account.
  char* Lend(std::string_view name);
  bool IsLent(const char* record) const { return !lent_.empty() && record == lent_.data(); }
  // Takes over what was changed in the lent record, writes the file and ends the loan. False, with the file
  // and the accounts as they were, when the title cannot be a name or is in use, or the file cannot be
  // written.
  bool Save();
  void Release() { lent_.clear(); }

  // The four long texts by their kind number, as host text. SetText writes the file.
  std::string Text(std::string_view name, std::size_t kind) const;
  bool SetText(std::string_view name, std::size_t kind, std::string_view text);

 private:
  std::vector<char> RecordOf(const std::string& section) const;
  bool Write(SettingsText changed);

  std::filesystem::path file_;
  SettingsText settings_;
  std::vector<char> lent_;
  std::string lent_section_;  // UTF-8
  // Passwords, which macros may set but nothing reads: kept while the program runs, never written to the
  // file.
  std::map<std::string, std::string> passwords_;
};

}  // namespace wrenfold
