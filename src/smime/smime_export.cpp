// The exports that decrypt and verify messages, judge and choose certificates, and work on those of
// a message.
#include <windows.h>

#include "src/base/unique_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/bridge/security_state_win.h"
#include "src/catalogue/declarations.h"
#include "src/smime/cert_lookup_win.h"
#include "src/smime/cert_match_win.h"
#include "src/smime/cert_report_win.h"
#include "src/smime/import_win.h"
#include "src/smime/message_store_win.h"
#include "src/smime/revocation_win.h"
#include "src/smime/smime_engine_win.h"
#include "src/smime/verify_win.h"

namespace {

// False for bytes that cannot be read: macros pass anything.
bool AreBytes(const void* bytes, unsigned size) { return bytes != nullptr && !IsBadReadPtr(bytes, size); }

}  // namespace

unsigned int PgpGetSMIMEOutputSize() noexcept { return wfinfo::g_smimeOutputSize; }

const char* SMIMEDecrypt(const void* message, unsigned int size, const char* address) noexcept {
  const wfinfo::UniqueLocal earlier_info(wfinfo::TakePgpInfoText());  // the bytes may lie in it
  wfinfo::BeginPgpRun();
  if (!AreBytes(message, size) || !wfinfo::IsTextOrNull(address)) return wfinfo::kNoText;
  return wfinfo::smime::SmimeDecrypt(static_cast<const BYTE*>(message), size, address);
}

const char* SMIMEVerify(const void* message, unsigned int size, const void* detached,
                        unsigned int detached_size, const char* sender, void* decryption) noexcept {
  using namespace wfinfo::smime;
  // What an earlier message left behind is gone even when the parameters are refused.
  const wfinfo::UniqueLocal earlier_info(wfinfo::TakePgpInfoText());  // the bytes may lie in it
  wfinfo::BeginPgpRun();
  if (!AreBytes(message, size) || !wfinfo::IsTextOrNull(sender)) return wfinfo::kNoText;
  if (detached != nullptr && !AreBytes(detached, detached_size)) return wfinfo::kNoText;
  if (decryption != nullptr && !AreBytes(decryption, sizeof(CRYPT_DECRYPT_MESSAGE_PARA)))
    return wfinfo::kNoText;
  if (!LoadCryptoLibrary()) return wfinfo::kNoText;
  return VerifyMessage({static_cast<const BYTE*>(message), size, static_cast<const BYTE*>(detached),
                        detached_size, sender, static_cast<CRYPT_DECRYPT_MESSAGE_PARA*>(decryption)});
}

const char* SMIMEVerifyCertificate(const void* cert, void* further) noexcept {
  using namespace wfinfo::smime;
  if (!LoadCryptoLibrary() || !IsCertificate(cert)) return wfinfo::kNoText;
  return CertificateReport(static_cast<PCCERT_CONTEXT>(cert), IsStore(further) ? further : nullptr);
}

unsigned int SMIMEVerifyCertificateByWinVerifyTrust_Cert(int show_ui, const void* cert) noexcept {
  using namespace wfinfo::smime;
  if (!LoadCryptoLibrary() || !IsCertificate(cert)) return kNoTrustVerdict;
  return TrustVerdict(show_ui != 0, static_cast<PCCERT_CONTEXT>(cert));
}

unsigned int SMIMEVerifyCertificateByWinVerifyTrust(int show_ui, void* store) noexcept {
  using namespace wfinfo::smime;
  if (!LoadCryptoLibrary() || !IsStore(store)) return kNoTrustVerdict;
  const UniqueCert own = OwnCertificate(store);
  return own ? TrustVerdict(show_ui != 0, own.get()) : kNoTrustVerdict;
}

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

int SMIMEVerifyRevocation(void* store, void* control) noexcept {
  using namespace wfinfo::smime;
  if (!LoadCryptoLibrary() || !IsStore(store)) return 0;
  return CheckRevocation(store, static_cast<HWND>(control)) ? 1 : 0;
}

int SMIMEVerifyRevocation_Cert(const void* cert, void* store, void* control) noexcept {
  using namespace wfinfo::smime;
  if (!LoadCryptoLibrary() || !IsCertificate(cert)) return 0;
  if (g_crypto.CertVerifyCRLRevocation == nullptr) return 0;
  return CheckRevocationOf(static_cast<PCCERT_CONTEXT>(cert), IsStore(store) ? store : nullptr,
                           static_cast<HWND>(control))
             ? 1
             : 0;
}

int SMIMEAddCertificate(void* source, int quiet, void* parent) noexcept {
  using namespace wfinfo::smime;
  if (!IsStore(source) || !LoadCryptoLibrary()) return 0;
  return ImportCertificates(source, quiet != 0, static_cast<HWND>(parent)) ? 1 : 0;
}

int SMIMEAddEncodedCertificate(const void* encoded, unsigned int size) noexcept {
  using namespace wfinfo::smime;
  if (!LoadCryptoLibrary() || encoded == nullptr || IsBadReadPtr(encoded, size)) return 0;
  return static_cast<int>(ImportEncoded(static_cast<const BYTE*>(encoded), size));
}

int SMIMEShowCertificate(void* store, void* parent) noexcept {
  using namespace wfinfo::smime;
  if (!LoadCryptoLibrary() || !IsStore(store)) return 0;
  return ShowOwnCertificate(store, static_cast<HWND>(parent)) ? 1 : 0;
}
