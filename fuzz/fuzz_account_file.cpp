// The file of the accounts: every account in it can be lent and saved, which changes nothing but what was
// set, and a save that is refused leaves the file alone. The first byte chooses a key, up to the first zero
// byte stands the file, behind it the key's value.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/demand.h"
#include "fuzz/input.h"
#include "fuzz/whole_text.h"
#include "host/base/ascii.h"
#include "host/base/settings_text.h"
#include "host/charset/charsets.h"
#include "host/files/whole_file.h"
#include "host/user/accounts.h"
#include "src/commands/account_fields.h"

namespace {

using wfinfo::AccountKey;
using wrenfold::AccountStore;

using Values = std::map<std::pair<std::string, std::string_view>, std::string>;

AccountStore Opened(const std::filesystem::path& file) {
  AccountStore store;
  Demand(store.Open(file) == std::nullopt);
  return store;
}

// What stands in the file, but for `key` of the account `name`.
Values Known(const AccountStore& store, std::string_view name, std::string_view key) {
  Values values;
  for (const std::string& each : store.Names()) {
    for (const AccountKey& row : wfinfo::AccountKeys()) {
      if (wrenfold::EqualsIgnoringCase(each, name) && row.word == key) continue;
      values[{each, row.word}] = store.Value(each, row.word);
    }
  }
  return values;
}

std::string Bytes(const std::filesystem::path& file) { return wrenfold::ReadWholeFile(file).value_or(""); }

// Lending and saving without a change.
void CheckSaving(const std::filesystem::path& file, std::string_view name) {
  AccountStore store = Opened(file);
  const std::string before = Bytes(file);
  const Values known = Known(store, "", "");
  char* const record = store.Lend(name);
  Demand(record != nullptr && store.LentName(record).has_value());
  for (const AccountKey& key : wfinfo::AccountKeys()) {
    if (key.IsText()) DemandWholeText(wfinfo::FieldText(record, key.offset, key.kind));
  }
  if (const auto reason = store.Save(record)) {
    Demand(!reason->empty() && Bytes(file) == before);
  } else {
    Demand(Bytes(file) == wrenfold::SettingsText(before).Text());
    Demand(Known(store, "", "") == known && Known(Opened(file), "", "") == known);
  }
  Demand(store.Save(record).has_value() && !store.Release(record));
}

void CheckChanging(const std::filesystem::path& file, const AccountKey& key, std::string_view value) {
  AccountStore store = Opened(file);
  if (!key.IsText() || key.mark == wfinfo::KeyMark::kSecret || key.word == "szTitle") return;
  const std::string name = store.Names().front();
  const Values known = Known(store, name, key.word);
  char* const record = store.Lend(name);
  if (!wfinfo::StoreAccountText(key, value, record) || store.Save(record)) return;
  const AccountStore again = Opened(file);
  Demand(again.Value(name, key.word) == value);
  Demand(Known(again, name, key.word) == known);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const OwnFolder folder("accounts");
  if (size == 0) return 0;
  const auto keys = wfinfo::AccountKeys();
  const AccountKey& key = keys[data[0] % keys.size()];
  std::string_view input(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::string_view text = TakeField(input);
  const auto write = [&] { return folder.Write("accounts.txt", text); };
  if (!wrenfold::IsValidUtf8(text)) {
    AccountStore store;
    Demand(store.Open(write()).value_or("").find("line ") != std::string::npos && store.Names().empty());
    return 0;
  }
  const std::vector<std::string> names = Opened(write()).Names();
  for (std::size_t i = 0; i < names.size() && i < 4; ++i) CheckSaving(write(), names[i]);
  // A value as a macro sets it: one line of whole characters.
  std::string value = wrenfold::SystemCharsets().Utf8ToHost(wrenfold::WithoutLineEnds(input));
  value.resize(std::min(value.size(), value.find('\0')));
  if (!names.empty()) CheckChanging(write(), key, value);
  return 0;
}
