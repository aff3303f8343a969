// The report on a signed message: who signed it, and whether that is the sender.
#pragma once

#include "src/smime/crypto_binding_win.h"

namespace wfinfo::smime {

// The label in front of the signer's address. The revocation check finds the address by it.
inline constexpr Message kSignerLabel = {"Signer email address: ", "署名者メールアドレス： "};

// The report on a good signature of `signer` as a LocalAlloc block, or null without memory. `sender` may be
// null; `carried` holds the certificates of the message.
char* SignatureReport(PCCERT_CONTEXT signer, const char* sender, HCERTSTORE carried);

// The report on a signature that could not be verified, for the error of the verification.
char* FailureReport(DWORD error);

}  // namespace wfinfo::smime
