// Signing, encrypting and decrypting with CryptoAPI.
#pragma once

#include <windows.h>

namespace wfinfo::smime {

// Modes of SmimeEncryptSign; every other number signs and encrypts too.
inline constexpr int kEncryptOnly = 0;
inline constexpr int kSignOnly = 1;

// Makes a message (DER bytes) of `text`: encrypted for the blank-separated `recipients`, signed by the owner
// of `signer_address` (detached when it is only signed), or both. `algorithm` and `hash` are the selectors of
// smime/algorithms.h; `remembered_choice` is the host's number of a certificate, 0 for none. The texts are
// readable; a text that the mode does not need may be null. The result is the S/MIME output block; "" after a
// failure, which the user has been told, and when the user cancelled.
const char* SmimeEncryptSign(int mode, const char* text, const char* recipients, const char* signer_address,
                             int algorithm, int hash, DWORD remembered_choice);

// Decrypts a message with the user's personal certificates. A message that is signed and not enveloped is
// verified instead (the sender's `address` may be null). The content; "" after a failure, which the user has
// been told.
const char* SmimeDecrypt(const BYTE* message, DWORD size, const char* address);

}  // namespace wfinfo::smime
