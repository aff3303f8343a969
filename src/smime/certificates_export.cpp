// The exports that choose a certificate and hand certificates of a message over.
#include <windows.h>

#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"
#include "src/smime/cert_lookup_win.h"
#include "src/smime/message_store_win.h"

unsigned int SelectCertCrcDialog(const char* address) noexcept {
  using namespace wfinfo::smime;
  if (!wfinfo::IsText(address) || !LoadCryptoLibrary()) return 0;
  const UniqueStore personal = OpenUserStore(kStoreNames[0]);
  if (!personal) {
    ShowSmimeError("CertOpenStore failed");
    return 0;
  }
  const HCERTSTORE stores[] = {personal.get()};
  const PCCERT_CONTEXT found = FindCertByEmail(stores, 1, address, 0, true);
  if (found == nullptr || found == kCancelled) return 0;
  const UniqueCert cert(found);
  return ChoiceNumberOf(cert.get());
}

void* RetrieveCertificate() noexcept {
  if (!wfinfo::smime::LoadCryptoLibrary()) return nullptr;
  return wfinfo::smime::TakeMessageStore();
}

int FreeCertificate(void* store) noexcept {
  using namespace wfinfo::smime;
  if (!LoadCryptoLibrary() || !IsStore(store)) return 0;
  return g_crypto.CertCloseStore(store, CERT_CLOSE_STORE_CHECK_FLAG) ? 1 : 0;
}
