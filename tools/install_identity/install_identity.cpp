// install_identity STORE CERTIFICATE.der [KEY.msblob CONTAINER]
//
// Adds a certificate to a store of the current user. With a private key (as `openssl rsa -outform MSBLOB`
// writes it) the key goes into the key container of that name, and the certificate refers to it. 0 when
// it worked.
#include <windows.h>
// wincrypt.h needs windows.h first.
#include <wincrypt.h>

#include <cstdio>
#include <string>

namespace {

std::string Load(const char* name) {
  std::string bytes;
  if (FILE* file = std::fopen(name, "rb")) {
    char room[4096];
    for (std::size_t got; (got = std::fread(room, 1, sizeof room, file)) > 0;) bytes.append(room, got);
    std::fclose(file);
  }
  return bytes;
}

int Fail(const char* what) {
  std::printf("%s failed, error 0x%08lX\n", what, GetLastError());
  return 1;
}

bool ImportKey(const std::string& blob, const char* container) {
  CryptAcquireContextA(nullptr, container, nullptr, PROV_RSA_AES, CRYPT_DELETEKEYSET);
  HCRYPTPROV provider = 0;
  // Type 24: the older one knows no SHA-2.
  if (!CryptAcquireContextA(&provider, container, nullptr, PROV_RSA_AES, CRYPT_NEWKEYSET)) return false;
  HCRYPTKEY key = 0;
  const BOOL done = CryptImportKey(provider, reinterpret_cast<const BYTE*>(blob.data()),
                                   static_cast<DWORD>(blob.size()), 0, CRYPT_EXPORTABLE, &key);
  if (done) CryptDestroyKey(key);
  CryptReleaseContext(provider, 0);
  return done != FALSE;
}

bool ReferTo(PCCERT_CONTEXT cert, const char* container) {
  std::wstring wide(container, container + std::char_traits<char>::length(container));
  CRYPT_KEY_PROV_INFO info{};
  info.pwszContainerName = wide.data();
  info.dwProvType = PROV_RSA_AES;
  info.dwKeySpec = AT_KEYEXCHANGE;
  return CertSetCertificateContextProperty(cert, CERT_KEY_PROV_INFO_PROP_ID, 0, &info) != FALSE;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3 && count != 5) return Fail("usage");
  const std::string der = Load(arguments[2]);
  const PCCERT_CONTEXT cert = CertCreateCertificateContext(
      X509_ASN_ENCODING, reinterpret_cast<const BYTE*>(der.data()), static_cast<DWORD>(der.size()));
  if (cert == nullptr) return Fail("reading the certificate");
  if (count == 5 && !(ImportKey(Load(arguments[3]), arguments[4]) && ReferTo(cert, arguments[4]))) {
    return Fail("importing the key");
  }
  const HCERTSTORE store = CertOpenSystemStoreA(0, arguments[1]);
  if (store == nullptr) return Fail("opening the store");
  const BOOL added = CertAddCertificateContextToStore(store, cert, CERT_STORE_ADD_REPLACE_EXISTING, nullptr);
  if (!added) Fail("adding the certificate");
  CertFreeCertificateContext(cert);
  CertControlStore(store, 0, CERT_STORE_CTRL_COMMIT, nullptr);
  CertCloseStore(store, 0);
  return added ? 0 : 1;
}
