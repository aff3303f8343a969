// The one account record that the host has lent us, and the texts of that account which do not lie in it.
#pragma once

#include <optional>

#include "src/commands/account_keys.h"

namespace wfinfo {

// True while a record is lent.
bool IsAccountLoaded();

// The lent record; null when none is.
char* AccountRecord();

// True when `address` lies in the lent record or is a text of that account that AccountText gave.
bool IsOfAccount(const char* address);

// Gives the lent record back unsaved, if there is one.
void ReleaseAccount();

// Borrows the record of the account `name` and forgets the texts of the account before. False when there
// is none.
bool BorrowAccount(const char* name);

// The number or flag `key` of any account: of the lent record when `name` is its account, else of a record
// that is borrowed and given back beside it. Nothing when there is no such account.
std::optional<long long> NumberOfAccount(const char* name, const AccountKey& key);

// Has the host save the record and end the loan; after a success also stores the changed texts. The
// host's result.
int SaveAccount();

// The text of kind `kind`, asked of the host once; null without memory. Valid until it is set or the
// account saved.
const char* AccountText(int kind);

// Keeps `value` as the text of kind `kind`, to be stored by SaveAccount. False without memory.
bool SetAccountText(int kind, const char* value);

}  // namespace wfinfo
