// Reading and writing the keys of the account record that is lent.
#pragma once

#include "src/bridge/language_win.h"
#include "src/commands/account_keys.h"

namespace wfinfo {

// Reports; always 0.
long long RefuseAccount(const Message& message);

// A text of two places, as a short result: its address.
long long JoinedAccountText(const SplitText& split);

// The value of a key: a number, or the address of a text; 0 after a report for one that is a secret.
long long ReadAccountKey(const AccountKey& key);

// 1, or 0 when the key takes no such value, after a report where the user can help it. `spelled`: the key
// as the macro wrote it.
int WriteAccountKey(const AccountKey& key, const char* spelled, long long value);

}  // namespace wfinfo
