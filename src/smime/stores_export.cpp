// The exports that work on the certificates of a message: revocation, import, display.
#include <windows.h>

#include "src/catalogue/declarations.h"
#include "src/smime/import_win.h"
#include "src/smime/revocation_win.h"

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
