#include "host/user/accounts.h"

#include <charconv>
#include <iterator>
#include <system_error>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/files/file_hold.h"
#include "host/files/file_reasons.h"
#include "host/files/safe_saving.h"
#include "host/files/whole_file.h"
#include "src/commands/account_fields.h"

namespace wrenfold {
namespace {

using wfinfo::AccountKey;
using wfinfo::KeyMark;

constexpr std::string_view kTitle = "szTitle";  // the section's name, so never a line of its own
constexpr std::string_view kTexts[] = {"szNewTemplate", "szReplyTemplate", "szForwardTemplate",
                                       "szSignature"};
static_assert(std::size(kTexts) == wfinfo::kAccountTexts);

std::string ToUtf8(std::string_view host) { return SystemCharsets().HostToUtf8(host); }
std::string ToHost(std::string_view utf8) { return SystemCharsets().Utf8ToHost(utf8); }

// A text of the record in one piece.
std::string TextOf(const wfinfo::SplitText& split, const char* record) {
  std::string joined(split.Limit() + 1, '\0');
  joined.resize(wfinfo::JoinSplitText(split, record, joined.data()));
  return joined;
}

// The value of a key as host text: numbers in digits.
std::string ValueOf(const AccountKey& key, const char* record) {
  if (!key.IsText()) return std::to_string(wfinfo::AccountNumber(key, record));
  if (const auto* split = wfinfo::FindSplitText(key.word)) return TextOf(*split, record);
  return std::string(wfinfo::FieldText(record, key.offset, key.kind));
}

void StoreText(std::string_view word, std::string_view value, char* record) {
  const AccountKey* key = wfinfo::FindAccountKey(word);
  if (const auto* split = wfinfo::FindSplitText(word)) {
    wfinfo::StoreSplitText(*split, value, record);
  } else if (key != nullptr && key->IsText()) {
    wfinfo::StoreAccountText(*key, value, record);
  }
}

// A number that is none counts as 0.
void Store(const AccountKey& key, std::string_view value, char* record) {
  if (key.IsText()) return StoreText(key.word, value, record);
  long long number = 0;
  std::from_chars(value.data(), value.data() + value.size(), number);
  wfinfo::StoreAccountNumber(key, number, record);
}

// All words that stand for one value of the record, the title left out. Calls `visit(word, value of record)`.
template <class Visit>
void EachValue(const char* record, Visit visit) {
  for (const AccountKey& key : wfinfo::AccountKeys()) {
    if (key.word != kTitle) visit(key.word, key.mark == KeyMark::kSecret, ValueOf(key, record));
  }
  for (const wfinfo::SplitText& split : wfinfo::SplitTexts()) {
    if (wfinfo::FindAccountKey(split.word) == nullptr) visit(split.word, false, TextOf(split, record));
  }
}

// Number of the first line that is not UTF-8; 0 when there is none.
std::size_t FirstForeignLine(std::string_view text) {
  for (std::size_t number = 1; !text.empty(); ++number) {
    const LineLength length = FirstLine(text);
    if (!IsValidUtf8(text.substr(0, length.text))) return number;
    text.remove_prefix(length.with_end);
  }
  return 0;
}

std::string PasswordKey(std::string_view section, std::string_view word) {
  return Lower(section) + '\n' + std::string(word);
}

std::string Unreadable(const std::filesystem::path& file) {
  return "cannot read the accounts " + PathToUtf8(file) + ": " + ReasonUnreadable(file);
}

// Why an account of such a name (UTF-8) is not there, or cannot be.
std::string NoAccount(const std::string& name) { return "no account '" + name + "'"; }
std::string NameInUse(const std::string& name) { return "there is an account '" + name + "' already"; }
std::string NoName(const std::string& name) {
  return name.empty() ? "an account needs a name" : "'" + name + "' cannot be the name of an account";
}

}  // namespace

std::optional<std::string> AccountStore::Open(const std::filesystem::path& file) {
  file_ = file;
  std::error_code error;
  if (!std::filesystem::exists(file, error)) return std::nullopt;
  const auto bytes = ReadWholeFile(file);
  if (!bytes) return Unreadable(file);
  // An account with a name in another encoding could be listed, but not asked for by that name.
  if (const std::size_t line = FirstForeignLine(*bytes); line > 0)
    return "the accounts " + PathToUtf8(file) + " are to be UTF-8: line " + std::to_string(line) + " is not";
  settings_ = SettingsText(*bytes);
  return std::nullopt;
}

std::vector<std::string> AccountStore::Complaints() const {
  std::vector<std::string> told;
  for (const LineComplaint& complaint : settings_.Complaints()) told.push_back(ToldLine(file_, complaint));
  return told;
}

std::vector<std::string> AccountStore::Names() const {
  std::vector<std::string> names;
  for (const std::string& section : settings_.Sections()) names.push_back(ToHost(section));
  return names;
}

std::string AccountStore::Value(std::string_view name, std::string_view key) const {
  return ToHost(settings_.Value(ToUtf8(name), key).value_or(""));
}

std::optional<std::string> AccountStore::Change(
    const std::function<std::optional<std::string>(SettingsText&)>& change) {
  const FileHold hold(file_);
  if (hold.failure()) return hold.failure();
  std::error_code error;
  const auto bytes = ReadWholeFile(file_);
  if (!bytes && std::filesystem::exists(file_, error)) return Unreadable(file_);
  SettingsText changed(bytes.value_or(""));
  if (auto reason = change(changed)) return reason;
  if (auto reason = WriteSafely(file_, changed.Text())) return reason;
  settings_ = std::move(changed);
  return std::nullopt;
}

std::optional<std::string> AccountStore::Create(std::string_view name) {
  const std::string section = ToUtf8(name);
  if (!SettingsText::CanBeSection(section)) return NoName(section);
  return Change([&](SettingsText& settings) -> std::optional<std::string> {
    if (settings.HasSection(section)) return NameInUse(section);
    settings.AddSection(section);
    return std::nullopt;
  });
}

std::vector<char> AccountStore::RecordOf(const std::string& section) const {
  std::vector<char> record(wfinfo::kAccountRecordSize);
  const auto put = [&](std::string_view word, const auto& store) {
    const auto password = passwords_.find(PasswordKey(section, word));
    if (password != passwords_.end()) return store(password->second);
    if (const auto value = settings_.Value(section, word)) store(ToHost(*value));
  };
  StoreText(kTitle, ToHost(section), record.data());
  for (const AccountKey& key : wfinfo::AccountKeys()) {
    if (key.word == kTitle) continue;
    put(key.word, [&](const std::string& value) { Store(key, value, record.data()); });
  }
  for (const wfinfo::SplitText& split : wfinfo::SplitTexts()) {
    put(split.word, [&](const std::string& value) { StoreText(split.word, value, record.data()); });
  }
  return record;
}

char* AccountStore::Lend(std::string_view name) {
  const std::string wanted = ToUtf8(name);
  for (const std::string& section : settings_.Sections()) {
    if (!EqualsIgnoringCase(section, wanted)) continue;
    return loans_.emplace_back(Loan{section, RecordOf(section)}).record.data();
  }
  return nullptr;
}

std::optional<std::string> AccountStore::LentName(const char* record) const {
  for (const Loan& loan : loans_) {
    if (loan.record.data() == record) return ToHost(loan.section);
  }
  return std::nullopt;
}

std::optional<AccountStore::Loan> AccountStore::TakeLoan(const char* record) {
  for (auto loan = loans_.begin(); loan != loans_.end(); ++loan) {
    if (loan->record.data() != record) continue;
    std::optional<Loan> taken = std::move(*loan);
    loans_.erase(loan);
    return taken;
  }
  return std::nullopt;
}

bool AccountStore::Release(const char* record) { return TakeLoan(record).has_value(); }

std::optional<std::string> AccountStore::Save(const char* record) {
  const std::optional<Loan> loan = TakeLoan(record);
  return loan ? Keep(loan->section, loan->record.data()) : "the record is not lent";
}

std::optional<std::string> AccountStore::Keep(const std::string& section, const char* record) {
  const std::string title = ToUtf8(ValueOf(*wfinfo::FindAccountKey(kTitle), record));
  const bool renamed = !EqualsIgnoringCase(title, section);
  if (!SettingsText::CanBeSection(title)) return NoName(title);
  const std::vector<char> before = RecordOf(section);
  std::map<std::string_view, std::string> old_values;
  EachValue(before.data(), [&](std::string_view word, bool, std::string value) { old_values[word] = value; });
  std::map<std::string, std::string> passwords;
  const auto reason = Change([&](SettingsText& settings) -> std::optional<std::string> {
    if (!settings.HasSection(section)) return NoAccount(section);
    if (renamed && settings.HasSection(title)) return NameInUse(title);
    if (title != section) settings.RenameSection(section, title);
    EachValue(record, [&](std::string_view word, bool secret, std::string value) {
      if (secret) {
        passwords[PasswordKey(title, word)] = value;
      } else if (value != old_values[word]) {
        settings.Set(title, word, ToUtf8(value));
      }
    });
    return std::nullopt;
  });
  if (reason) return reason;
  for (const auto& [key, password] : passwords) passwords_[key] = password;
  for (Loan& other : loans_) {
    if (EqualsIgnoringCase(other.section, section)) other.section = title;
  }
  return std::nullopt;
}

std::string AccountStore::Text(std::string_view name, std::size_t kind) const {
  return kind < std::size(kTexts) ? Value(name, kTexts[kind]) : "";
}

std::optional<std::string> AccountStore::SetText(std::string_view name, std::size_t kind,
                                                 std::string_view text) {
  const std::string section = ToUtf8(name);
  if (kind >= std::size(kTexts)) return "there is no long text " + std::to_string(kind);
  return Change([&](SettingsText& settings) -> std::optional<std::string> {
    if (!settings.HasSection(section)) return NoAccount(section);
    settings.Set(section, kTexts[kind], ToUtf8(text));
    return std::nullopt;
  });
}

}  // namespace wrenfold
