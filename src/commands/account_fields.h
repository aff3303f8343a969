// Reading and writing the fields of an account record. `record` has at least kAccountRecordSize bytes, or the
// bytes that the given key reaches.
#pragma once

#include "src/commands/account_keys.h"

namespace wfinfo {

// The number or flag of a key that is no text: bytes and words as they are, 32-bit numbers signed, flags with
// a mask 0 or 1.
long long AccountNumber(const AccountKey& key, const char* record);

// Stores the low bits of `value`, or sets (not 0) or clears (0) the bits of a flag with a mask.
// `fSaveUidlInMail` stays set while any of the synchronising flags in its byte is set.
void StoreAccountNumber(const AccountKey& key, long long value, char* record);

// Stores `value` with its terminator; false, with nothing changed, when it is too long. It may lie in
// the record.
bool StoreAccountText(const AccountKey& key, std::string_view value, char* record);
bool StoreSplitText(const SplitText& split, std::string_view value, char* record);

// Writes both places of a split text to `destination` as one; it needs split.Limit() + 1 bytes. Returns
// the length.
std::size_t JoinSplitText(const SplitText& split, const char* record, char* destination);

// The text of a field of `room` bytes; a field without a terminator ends at its last byte.
std::string_view FieldText(const char* record, std::size_t offset, std::size_t room);

}  // namespace wfinfo
