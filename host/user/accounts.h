// The accounts of the small host: sections of a settings file (settings_text.h) whose keys are those of the
// account record.
#pragma once

#include <filesystem>
#include <functional>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/settings_text.h"

namespace wrenfold {

class AccountStore {
 public:
  // The accounts of `file`; a missing file holds none, and is made when the first account is. Returns why the
  // file cannot be used.
  std::optional<std::string> Open(const std::filesystem::path& file);

  // What Open passed over: "accounts.txt:3: ..." for each line.
  std::vector<std::string> Complaints() const;

  // The same of the file that was opened last, which somebody else may have changed.
  std::optional<std::string> Reload() { return Open(std::filesystem::path(file_)); }

  // Names (host text) in the order of the file.
  std::vector<std::string> Names() const;
  // Text `key` of the account as host text, "" when it has none.
  std::string Value(std::string_view name, std::string_view key) const;

  // Adds an account without settings and writes the file. Returns why that is not possible.
  std::optional<std::string> Create(std::string_view name);

  // A copy of the account's record, valid until it is saved or released; null without such an account. Each
  // loan is a record of its own: lending, saving and releasing one leaves the others as they are.
  char* Lend(std::string_view name);
  // The account (host text) that the record was lent for, whatever title stands in it; nothing for what is
  // not lent.
  std::optional<std::string> LentName(const char* record) const;
  // Takes over what was changed in the lent record, writes the file and ends the loan. Returns why that is
  // not possible, with the file and the accounts as they were: the title cannot be a name or is in use, the
  // file cannot be written, the record is not lent.
  std::optional<std::string> Save(const char* record);
  // False when the record is not lent.
  bool Release(const char* record);

  // The four long texts by their kind number, as host text. SetText writes the file; it returns why that is
  // not possible.
  std::string Text(std::string_view name, std::size_t kind) const;
  std::optional<std::string> SetText(std::string_view name, std::size_t kind, std::string_view text);

 private:
  struct Loan {
    std::string section;  // UTF-8
    std::vector<char> record;
  };
  // Ends a loan and gives it to the caller; nothing for what is not lent.
  std::optional<Loan> TakeLoan(const char* record);
  // Takes over the values of a record; `section` has the account's name before.
  std::optional<std::string> Keep(const std::string& section, const char* record);
  std::vector<char> RecordOf(const std::string& section) const;
  // Makes a change to what the file holds, which others may have written since, and writes it. Returns why
  // not, with all as it was: `change` says why it refuses, or the file cannot be written.
  std::optional<std::string> Change(const std::function<std::optional<std::string>(SettingsText&)>& change);

  std::filesystem::path file_;
  SettingsText settings_;
  std::list<Loan> loans_;
  // Passwords, which macros may set but nothing reads: kept while the program runs, never written to
  // the file.
  std::map<std::string, std::string> passwords_;
};

}  // namespace wrenfold
