// The exports that decrypt and verify messages and judge certificates.
#include <windows.h>

#include "src/base/unique_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/bridge/security_state_win.h"
#include "src/catalogue/declarations.h"
#include "src/smime/cert_match_win.h"
#include "src/smime/cert_report_win.h"
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
