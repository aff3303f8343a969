// Checking the revocation of a signer's certificate and of all above it, with a report line for each finding.
#pragma once

#include "src/smime/crypto_binding_win.h"

namespace wfinfo::smime {

// Checks the signer's certificate in `store` (the certificates of the message). `control` shows the
// verification report, from which the signer's address is read, and receives the findings. True when a
// certificate was checked to the end. Needs CertVerifyCRLRevocation.
bool CheckRevocation(HCERTSTORE store, HWND control);

// Checks one certificate and its chain. True when the chain could be built and walked, whatever was found.
bool CheckRevocationOf(PCCERT_CONTEXT cert, HCERTSTORE store, HWND control);

}  // namespace wfinfo::smime
