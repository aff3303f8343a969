#include "host/library/secrets.h"

#include "src/catalogue/rows.h"
#include "src/commands/account_fields.h"

namespace wrenfold {
namespace {

bool IsSecretName(std::string_view parameter) {
  return parameter == "pass_phrase" || parameter == "password";
}

// SetAccountProp takes all settings; some of them are passwords.
bool IsSecretSetting(std::string_view name, std::span<const macro::Value> parameters) {
  if (name != "SetAccountProp" || parameters.empty() || !parameters[0].IsText()) return false;
  const wfinfo::AccountKey* const key = wfinfo::FindAccountKey(parameters[0].Text());
  return key != nullptr && key->mark == wfinfo::KeyMark::kSecret;
}

}  // namespace

std::vector<macro::Value> WithoutSecrets(std::string_view name, std::span<const macro::Value> parameters) {
  std::vector<macro::Value> shown(parameters.begin(), parameters.end());
  const auto hide = [&shown](std::size_t index) {
    if (index < shown.size() && shown[index].IsTrue()) shown[index] = std::string("***");
  };
  const wfinfo::catalogue::Row* const row = wfinfo::catalogue::FindRow(name);
  if (row == nullptr) return shown;
  for (std::size_t i = 0; i < row->parameters.size(); ++i) {
    if (IsSecretName(row->parameters[i].name)) hide(i);
  }
  if (IsSecretSetting(name, parameters)) hide(1);
  return shown;
}

}  // namespace wrenfold
