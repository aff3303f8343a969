// The certificates that the last verified message carried.
#pragma once

#include "smime/crypto_binding_win.h"

namespace wfinfo::smime {

// Takes `store` (may be null) and closes the one held before.
void KeepMessageStore(HCERTSTORE store);

// The store held; null when there is none.
HCERTSTORE MessageStore();

// Hands the store over: the caller closes it, none is held afterwards.
HCERTSTORE TakeMessageStore();

}  // namespace wfinfo::smime
