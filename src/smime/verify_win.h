// Verifying the signatures of a message.
#pragma once

#include "src/smime/crypto_binding_win.h"

namespace wfinfo::smime {

// What VerifyMessage works on.
struct SignedMessage {
  const BYTE* message;
  DWORD size;
  const BYTE* detached;  // the signed content, null when the message carries it
  DWORD detached_size;
  const char* sender;                      // may be null
  CRYPT_DECRYPT_MESSAGE_PARA* decryption;  // for a message that may be enveloped; null otherwise
};

// Checks every signer, keeps the message's certificates and the report. The content when the message carried
// it and the check did not fail (the S/MIME output block), else "OK". crypt32 has been loaded.
const char* VerifyMessage(const SignedMessage& signed_message);

}  // namespace wfinfo::smime
