#include "src/smime/message_store_win.h"

#include <cstring>
#include <utility>

namespace wfinfo::smime {
namespace {

HCERTSTORE g_messageStore = nullptr;
BYTE* g_signer = nullptr;  // a LocalAlloc block
DWORD g_signerSize = 0;

}  // namespace

void KeepMessageStore(HCERTSTORE store) {
  const HCERTSTORE before = std::exchange(g_messageStore, store);
  if (before != nullptr) CloseStore(before);
}

HCERTSTORE MessageStore() { return g_messageStore; }

HCERTSTORE TakeMessageStore() { return std::exchange(g_messageStore, nullptr); }

void RememberMessageSigner(PCCERT_CONTEXT signer) {
  LocalFree(std::exchange(g_signer, nullptr));
  g_signerSize = 0;
  if (signer == nullptr) return;
  g_signer = static_cast<BYTE*>(LocalAlloc(LMEM_FIXED, signer->cbCertEncoded));
  if (g_signer == nullptr) return;
  g_signerSize = signer->cbCertEncoded;
  std::memcpy(g_signer, signer->pbCertEncoded, g_signerSize);
}

bool IsMessageSigner(PCCERT_CONTEXT cert) {
  return g_signer != nullptr && cert->cbCertEncoded == g_signerSize &&
         std::memcmp(cert->pbCertEncoded, g_signer, g_signerSize) == 0;
}

}  // namespace wfinfo::smime
