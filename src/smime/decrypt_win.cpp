#include "src/smime/decrypt_win.h"

namespace wfinfo::smime {

UniqueSecret DecryptMessage(CRYPT_DECRYPT_MESSAGE_PARA& para, const BYTE* message, DWORD message_size,
                            DWORD* size) {
  *size = 0;
  SetLastError(ERROR_SUCCESS);  // an earlier one is no reason of this failure
  if (!g_crypto.CryptDecryptMessage(&para, message, message_size, nullptr, size, nullptr)) return {};
  UniqueSecret block(NewSmimeOutput(*size));
  if (!block) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return {};
  }
  if (!g_crypto.CryptDecryptMessage(&para, message, message_size, static_cast<BYTE*>(block.get()), size,
                                    nullptr)) {
    return {};
  }
  return block;
}

}  // namespace wfinfo::smime
