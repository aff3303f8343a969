// The certificates that the last verified message carried, and whose signature it has.
#pragma once

#include "src/smime/crypto_binding_win.h"

namespace wfinfo::smime {

// Takes `store` (may be null) and closes the one held before.
void KeepMessageStore(HCERTSTORE store);

// The store held; null when there is none.
HCERTSTORE MessageStore();

// Hands the store over: the caller closes it, none is held afterwards.
HCERTSTORE TakeMessageStore();

// Remembers the certificate (its bytes, no context) of the verified signer; null: nobody.
void RememberMessageSigner(PCCERT_CONTEXT signer);

// True for the certificate that was remembered.
bool IsMessageSigner(PCCERT_CONTEXT cert);

}  // namespace wfinfo::smime
