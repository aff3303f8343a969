#include <windows.h>

#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/account_fields.h"
#include "src/commands/account_record_win.h"

using namespace wfinfo;

namespace {

constexpr std::size_t kMessageRoom = 256;

constexpr Message kUnknownKey = {"Unknown 1st parameter specified to GetAccountProp.",
                                 "GetAccountPropで未知のパラメータが指定されました。"};

long long Refuse(const Message& message) {
  ReportError(message);
  return 0;
}

long long JoinedInResultText(const SplitText& split) {
  JoinSplitText(split, AccountRecord(), g_resultText);
  return ToSlot(g_resultText);
}

long long ReadKey(const AccountKey& key) {
  if (key.mark == KeyMark::kSecret) {
    return Refuse({"An attempt to refer passwords by GetAccoutParam.",
                   "GetAccoutParamでパスワードを参照しようとしました。"});
  }
  if (!key.IsText()) return AccountNumber(key, AccountRecord());
  if (const SplitText* const split = FindSplitText(key.word)) return JoinedInResultText(*split);
  return ToSlot(AccountRecord() + key.offset);
}

int RefuseReadOnly(const char* spelled) {
  // The spelling differs from a key of the table in letter case at most, so it fits.
  char message[kMessageRoom];
  wsprintfA(message,
            Chosen({"A read-only property specified at SetAccountProp. parameter=%s",
                    "SetAccountPropで、書き込み禁止のパラメータが指定されました。パラメータ=%s"}),
            spelled);
  ReportError(message);
  return 0;
}

int WriteText(const AccountKey& key, const char* value) {
  if (!IsText(value)) return 0;
  const SplitText* const split = FindSplitText(key.word);
  return split != nullptr ? StoreSplitText(*split, value, AccountRecord())
                          : StoreAccountText(key, value, AccountRecord());
}

int WriteKey(const AccountKey& key, const char* spelled, long long value) {
  if (key.mark == KeyMark::kReadOnly) return RefuseReadOnly(spelled);
  if (key.IsText()) return WriteText(key, FromSlot<const char*>(value));
  if (key.IsFlag() && static_cast<unsigned long long>(value) > 1) {
    return static_cast<int>(Refuse({"An attempt to set other than 0/1 to a flag property.",
                                    "SetAccoutPropでフラグに0/1以外を設定しようとしました。"}));
  }
  StoreAccountNumber(key, value, AccountRecord());
  return 1;
}

}  // namespace

int LoadAccountProp(const char* account) noexcept {
  // The loan before ends even when the new name is refused.
  ReleaseAccount();
  return IsText(account) && BorrowAccount(account) ? 1 : 0;
}

long long GetAccountProp(const char* key) noexcept {
  if (!IsAccountLoaded()) {
    return Refuse({"GetAccountProp called even through LoadAccountProp is not called.",
                   "LoadAccountPropされてないのにGetAccoutPropが呼ばれました。"});
  }
  if (!IsText(key)) return Refuse(kUnknownKey);
  if (const AccountKey* const row = FindAccountKey(key)) return ReadKey(*row);
  if (const SplitText* const split = FindSplitText(key)) return JoinedInResultText(*split);
  const int kind = FindAccountText(key);
  return kind == kNoAccountText ? Refuse(kUnknownKey) : ToSlot(AccountText(kind));
}

int SetAccountProp(const char* key, long long value) noexcept {
  if (!IsAccountLoaded()) {
    return static_cast<int>(Refuse({"SetAccoutProp called even through LoadAccountProp is not called.",
                                    "LoadAccountPropされてないのにSetAccoutPropが呼ばれました。"}));
  }
  if (!IsText(key)) return 0;
  if (const AccountKey* const row = FindAccountKey(key)) return WriteKey(*row, key, value);
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
