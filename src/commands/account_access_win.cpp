#include "src/commands/account_access_win.h"

#include "src/base/slot.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/commands/account_fields.h"
#include "src/commands/account_record_win.h"

namespace wfinfo {
namespace {

int WriteText(const AccountKey& key, const char* value) {
  if (!IsText(value)) return 0;
  const SplitText* const split = FindSplitText(key.word);
  return split != nullptr ? StoreSplitText(*split, value, AccountRecord())
                          : StoreAccountText(key, value, AccountRecord());
}

}  // namespace

long long RefuseAccount(const Message& message) {
  ReportError(message);
  return 0;
}

long long JoinedAccountText(const SplitText& split) {
  JoinSplitText(split, AccountRecord(), g_resultText);
  return ToSlot(g_resultText);
}

long long ReadAccountKey(const AccountKey& key) {
  if (key.mark == KeyMark::kSecret) {
    return RefuseAccount({"An attempt to refer passwords by GetAccoutParam.",
                          "GetAccoutParamでパスワードを参照しようとしました。"});
  }
  if (!key.IsText()) return AccountNumber(key, AccountRecord());
  if (const SplitText* const split = FindSplitText(key.word)) return JoinedAccountText(*split);
  return ToSlot(AccountRecord() + key.offset);
}

int WriteAccountKey(const AccountKey& key, const char* spelled, long long value) {
  if (key.mark == KeyMark::kReadOnly) {
    ReportErrorAbout({"A read-only property specified at SetAccountProp. parameter=",
                      "SetAccountPropで、書き込み禁止のパラメータが指定されました。パラメータ="},
                     spelled);
    return 0;
  }
  if (key.IsText()) return WriteText(key, FromSlot<const char*>(value));
  if (key.IsFlag() && static_cast<unsigned long long>(value) > 1) {
    return static_cast<int>(RefuseAccount({"An attempt to set other than 0/1 to a flag property.",
                                           "SetAccoutPropでフラグに0/1以外を設定しようとしました。"}));
  }
  StoreAccountNumber(key, value, AccountRecord());
  return 1;
}

}  // namespace wfinfo
