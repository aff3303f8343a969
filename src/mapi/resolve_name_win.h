// One recipient out of a name that a program gives.
#pragma once

#include "src/mapi/mapi_records.h"

namespace wfinfo::mapi {

// Writes a record of the one address that `name` holds, which the caller frees with MAPIFreeBuffer.
// kUnknownRecipient when it holds none, and for pointers that are none.
unsigned ResolveName(const char* name, Recipient** recipient);

}  // namespace wfinfo::mapi
