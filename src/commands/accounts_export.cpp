// The settings of an account, which is borrowed from the host while a macro reads and changes them.
#include <windows.h>

#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/account_access_win.h"
#include "src/commands/account_fields.h"
#include "src/commands/account_record_win.h"

using namespace wfinfo;

namespace {

constexpr Message kUnknownKey = {"Unknown 1st parameter specified to GetAccountProp.",
                                 "GetAccountPropで未知のパラメータが指定されました。"};

}  // namespace

int LoadAccountProp(const char* account) noexcept {
  // The loan before ends even when the new name is refused.
  ReleaseAccount();
  return IsText(account) && BorrowAccount(account) ? 1 : 0;
}

long long GetAccountProp(const char* key) noexcept {
  if (!IsAccountLoaded()) {
    return RefuseAccount({"GetAccountProp called even through LoadAccountProp is not called.",
                          "LoadAccountPropされてないのにGetAccoutPropが呼ばれました。"});
  }
  if (!IsText(key)) return RefuseAccount(kUnknownKey);
  if (const AccountKey* const row = FindAccountKey(key)) return ReadAccountKey(*row);
  if (const SplitText* const split = FindSplitText(key)) return JoinedAccountText(*split);
  const int kind = FindAccountText(key);
  return kind == kNoAccountText ? RefuseAccount(kUnknownKey) : ToSlot(AccountText(kind));
}

int SetAccountProp(const char* key, long long value) noexcept {
  if (!IsAccountLoaded()) {
    return static_cast<int>(RefuseAccount({"SetAccoutProp called even through LoadAccountProp is not called.",
                                           "LoadAccountPropされてないのにSetAccoutPropが呼ばれました。"}));
  }
  if (!IsText(key)) return 0;
  if (const AccountKey* const row = FindAccountKey(key)) return WriteAccountKey(*row, key, value);
  const auto* const text = FromSlot<const char*>(value);
  if (!IsText(text)) return 0;
  if (const SplitText* const split = FindSplitText(key)) return StoreSplitText(*split, text, AccountRecord());
  const int kind = FindAccountText(key);
  return kind != kNoAccountText && SetAccountText(kind, text) ? 1 : 0;
}

int SaveAccountProp() noexcept { return IsAccountLoaded() ? SaveAccount() : 0; }

int IsImapSyncAccount(const char* account) noexcept {
  if (!IsText(account)) return 0;
  return NumberOfAccount(account, *FindAccountKey("fImapSync")).value_or(0) != 0 ? 1 : 0;
}
