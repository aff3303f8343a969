// crypt32 and cryptui, bound at run time: a table of function pointers through which all of S/MIME goes.
#pragma once

// In this order: these need windows.h, and the last one needs the others.
// clang-format off
#include <windows.h>
#include <prsht.h>
#include <wincrypt.h>
#include <wintrust.h>
#include <cryptuiapi.h>
// clang-format on

#include "src/base/unique_win.h"
#include "src/bridge/language_win.h"

// The entry points taken from crypt32, in the order in which they are looked up.
#define WFINFO_CRYPT32_ENTRIES(ENTRY)          \
  ENTRY(CertCloseStore)                        \
  ENTRY(CertFreeCertificateContext)            \
  ENTRY(CryptVerifyMessageSignature)           \
  ENTRY(CryptSignMessage)                      \
  ENTRY(CertOpenStore)                         \
  ENTRY(CertGetIssuerCertificateFromStore)     \
  ENTRY(CertGetCertificateChain)               \
  ENTRY(CertFreeCertificateChain)              \
  ENTRY(CertStrToNameA)                        \
  ENTRY(CertNameToStrA)                        \
  ENTRY(CertGetNameStringA)                    \
  ENTRY(CryptEncryptMessage)                   \
  ENTRY(CryptSignAndEncryptMessage)            \
  ENTRY(CryptDecryptMessage)                   \
  ENTRY(CryptDecryptAndVerifyMessageSignature) \
  ENTRY(CertDuplicateCertificateContext)       \
  ENTRY(CryptVerifyDetachedMessageSignature)   \
  ENTRY(CertAddCertificateContextToStore)      \
  ENTRY(CertAddEncodedCertificateToStore)      \
  ENTRY(CertEnumCertificatesInStore)           \
  ENTRY(CryptDecodeObjectEx)                   \
  ENTRY(CertOpenSystemStoreA)                  \
  ENTRY(CertVerifyTimeValidity)                \
  ENTRY(CertVerifyCertificateChainPolicy)      \
  ENTRY(CertVerifyRevocation)                  \
  ENTRY(CryptGetMessageCertificates)           \
  ENTRY(CertFindCertificateInStore)            \
  ENTRY(CertCreateCertificateContext)          \
  ENTRY(CertCreateCRLContext)                  \
  ENTRY(CertVerifyCRLRevocation)               \
  ENTRY(CertFreeCRLContext)                    \
  ENTRY(CertFindCRLInStore)                    \
  ENTRY(CertAddCRLContextToStore)              \
  ENTRY(CertVerifyCRLTimeValidity)             \
  ENTRY(CertGetCRLFromStore)                   \
  ENTRY(CertCompareCertificate)

namespace wfinfo::smime {

struct CryptoBinding {
  HMODULE crypt32;  // null until loaded; never unloaded
#define WFINFO_MEMBER(name) decltype(&::name) name;
  WFINFO_CRYPT32_ENTRIES(WFINFO_MEMBER)
#undef WFINFO_MEMBER
  HMODULE cryptui;  // null when certificates cannot be shown
  decltype(&::CryptUIDlgViewContext) CryptUIDlgViewContext;
  decltype(&::CryptUIDlgViewCertificateW) CryptUIDlgViewCertificateW;
  HMODULE wintrust;  // null until the first verdict is asked for
};
// An entry that the loaded crypt32 lacks is null when its users look for that, else a function that
// fails with ERROR_PROC_NOT_FOUND: no operation ends the process, and one that can do without the entry
// still works.
extern CryptoBinding g_crypto;

// Where modules and entries come from. Whoever watches or replaces single entries puts his own
// functions here.
struct CryptoLoader {
  HMODULE (*load)(const char* path);
  void* (*entry)(HMODULE module, const char* name);
};
extern CryptoLoader g_cryptoLoader;

// Loads what is not loaded yet and takes all entries anew. False, after the error box, without crypt32;
// without cryptui only the display of certificates is lost. The first thing that every S/MIME export calls.
bool LoadCryptoLibrary();

// A module from the system folder through the loader above; null when there is none.
HMODULE LoadFromSystemFolder(const char* name);

// Error box of this family: the failed step and the thread's last error. Also written to the debug log. A
// text of 1023 characters or more ends the process.
void ShowSmimeError(const char* what);
inline void ShowSmimeError(const Message& what) { ShowSmimeError(Chosen(what)); }

// Writes `text` to the debug log and shows it in a box with the error icon.
void ShowSmimeBox(const char* text);

// A printf-style line (wsprintfA rules, at most 1023 bytes) for the debug log.
void LogLine(const char* format, ...);

// What every call states as the encoding of certificates and messages.
inline constexpr DWORD kEncoding = X509_ASN_ENCODING | PKCS_7_ASN_ENCODING;

// A message that is not encrypted, by its number: the headers know it under another name.
inline constexpr DWORD kNoEnvelope = 0x8009200A;

// Owners. Each closes through the binding.
inline void CloseStore(HCERTSTORE store) { g_crypto.CertCloseStore(store, CERT_CLOSE_STORE_CHECK_FLAG); }
inline void FreeCert(PCCERT_CONTEXT cert) { g_crypto.CertFreeCertificateContext(cert); }
inline void FreeCrl(PCCRL_CONTEXT crl) { g_crypto.CertFreeCRLContext(crl); }
inline void FreeChain(PCCERT_CHAIN_CONTEXT chain) { g_crypto.CertFreeCertificateChain(chain); }
using UniqueStore = Unique<PointerTraits<HCERTSTORE, &CloseStore>>;
using UniqueCert = Unique<PointerTraits<PCCERT_CONTEXT, &FreeCert>>;
using UniqueCrl = Unique<PointerTraits<PCCRL_CONTEXT, &FreeCrl>>;
using UniqueChain = Unique<PointerTraits<PCCERT_CHAIN_CONTEXT, &FreeChain>>;

// A store of the current user, empty when it cannot be opened.
inline UniqueStore OpenUserStore(const char* name) {
  return UniqueStore(g_crypto.CertOpenSystemStoreA(0, name));
}

// The chain of `cert` now, with the default engine and no demands on usage; empty when it cannot be
// built, also for want of the chain entries. `further` (may be null) is searched too.
UniqueChain BuildChain(PCCERT_CONTEXT cert, HCERTSTORE further);

// The first simple chain, or null.
const CERT_SIMPLE_CHAIN* FirstChain(const UniqueChain& chain);

// Walks the certificates of `store` until `visit(cert)` answers false. The context belongs to the walk.
template <class Visit>
void EachCertificate(HCERTSTORE store, Visit&& visit) {
  PCCERT_CONTEXT cert = nullptr;
  while ((cert = g_crypto.CertEnumCertificatesInStore(store, cert)) != nullptr) {
    if (visit(cert)) continue;
    g_crypto.CertFreeCertificateContext(cert);
    return;
  }
}

// False for addresses that cannot be a certificate or store: macros pass anything.
inline bool IsCertificate(const void* cert) {
  return cert != nullptr && !IsBadReadPtr(cert, sizeof(CERT_CONTEXT));
}
inline bool IsStore(const void* store) { return store != nullptr && !IsBadReadPtr(store, sizeof(void*)); }

}  // namespace wfinfo::smime
