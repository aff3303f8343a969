// Opening an envelope.
#pragma once

#include "src/bridge/security_state_win.h"
#include "src/smime/crypto_binding_win.h"

namespace wfinfo::smime {

// What a message holds when it is opened with the keys that `para` names, in a block with spare bytes; *size
// is its length. Empty after a failure with the thread's last error set.
UniqueSecret DecryptMessage(CRYPT_DECRYPT_MESSAGE_PARA& para, const BYTE* message, DWORD message_size,
                            DWORD* size);

}  // namespace wfinfo::smime
