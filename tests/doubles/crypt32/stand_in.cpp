// The functions of crypt32 that Wine's own lacks or gets wrong, on the system's cryptographic providers.
// Errors are those that CryptoAPI documents. Where its pages leave something open (a success that verified
// nothing, a failure without a last error), this does the least kind thing. What passes against this agrees
// with OpenSSL and with this file, not with Windows.
#include <windows.h>
// wincrypt.h needs windows.h first.
#include <wincrypt.h>

#include <algorithm>
#include <cstring>

#include "tests/doubles/crypt32/ber.h"

namespace {

using ber::Bytes;
using ber::Element;

constexpr DWORD kNotThisType = 0x8009200A;
constexpr DWORD kNoSigner = 0x8009200E;
constexpr DWORD kNoDecryptCert = 0x8009200C;
constexpr DWORD kBadTag = 0x8009310B;
constexpr DWORD kSignerNotFound = 0x8009100E;
constexpr DWORD kHashValue = 0x80091007;
constexpr DWORD kBadSignature = 0x80090006;
constexpr DWORD kBadAlgorithm = 0x80090008;
constexpr DWORD kBadArgument = 0x80070057;

constexpr char kData[] = "1.2.840.113549.1.7.1";
constexpr char kSignedData[] = "1.2.840.113549.1.7.2";
constexpr char kEnvelopedData[] = "1.2.840.113549.1.7.3";
constexpr char kRsa[] = "1.2.840.113549.1.1.1";
constexpr char kMessageDigest[] = "1.2.840.113549.1.9.4";

#define WINE_FUNCTION(name)             \
  (reinterpret_cast<decltype(&::name)>( \
      reinterpret_cast<void*>(GetProcAddress(LoadLibraryA("wcrypt32.dll"), #name))))

BOOL Fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}

HCRYPTPROV Provider() {
  static HCRYPTPROV provider = 0;
  if (provider == 0) CryptAcquireContextA(&provider, nullptr, nullptr, PROV_RSA_AES, CRYPT_VERIFYCONTEXT);
  return provider;
}

Bytes Reversed(Bytes bytes) {
  std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

Bytes AsBytes(const BYTE* bytes, DWORD size) { return Bytes(reinterpret_cast<const char*>(bytes), size); }

// Hands `bytes` over as CryptoAPI does: size first, then the bytes.
BOOL Deliver(const Bytes& bytes, BYTE* out, DWORD* size) {
  if (size == nullptr) return TRUE;
  const DWORD room = *size;
  *size = static_cast<DWORD>(bytes.size());
  if (out == nullptr) return TRUE;
  if (room < bytes.size()) return Fail(ERROR_MORE_DATA);
  std::memcpy(out, bytes.data(), bytes.size());
  return TRUE;
}

struct Cipher {
  const char* oid;
  ALG_ID id;
  DWORD block;
};
const Cipher kCiphers[] = {
    {"1.2.840.113549.3.2", CALG_RC2, 8},
    {"1.2.840.113549.3.7", CALG_3DES, 8},
    {"1.3.14.3.2.7", CALG_DES, 8},
    {"2.16.840.1.101.3.4.1.2", CALG_AES_128, 16},
    {"2.16.840.1.101.3.4.1.42", CALG_AES_256, 16},
};
const struct {
  DWORD bits;
  unsigned version;
} kRc2Versions[] = {{40, 160}, {64, 120}, {128, 58}};

// A content key with its cipher set up. Destroyed with this object.
struct ContentKey {
  HCRYPTKEY key = 0;
  ~ContentKey() {
    if (key != 0) CryptDestroyKey(key);
  }
  void SetUp(const Bytes& vector, DWORD rc2_bits) {
    if (rc2_bits != 0) {
      // Short keys would otherwise get some zero bytes behind them.
      CRYPT_DATA_BLOB no_salt = {0, nullptr};
      CryptSetKeyParam(key, KP_SALT_EX, reinterpret_cast<const BYTE*>(&no_salt), 0);
      CryptSetKeyParam(key, KP_EFFECTIVE_KEYLEN, reinterpret_cast<const BYTE*>(&rc2_bits), 0);
    }
    CryptSetKeyParam(key, KP_IV, reinterpret_cast<const BYTE*>(vector.data()), 0);
  }
};

Bytes Encrypted(const ContentKey& key, const Bytes& content) {
  Bytes room = content;
  auto size = static_cast<DWORD>(content.size());
  room.resize(content.size() + 32);
  if (!CryptEncrypt(key.key, 0, TRUE, 0, reinterpret_cast<BYTE*>(room.data()), &size,
                    static_cast<DWORD>(room.size()))) {
    return {};
  }
  room.resize(size);
  return room;
}

// The content key for one recipient: issuer and serial number, RSA, the encrypted key.
Bytes RecipientInfo(const ContentKey& key, PCCERT_CONTEXT cert) {
  HCRYPTKEY public_key = 0;
  if (!WINE_FUNCTION(CryptImportPublicKeyInfo)(Provider(), X509_ASN_ENCODING,
                                               &cert->pCertInfo->SubjectPublicKeyInfo, &public_key)) {
    return {};
  }
  BYTE blob[1024];
  DWORD size = sizeof blob;
  const BOOL exported = CryptExportKey(key.key, public_key, SIMPLEBLOB, 0, blob, &size);
  CryptDestroyKey(public_key);
  if (!exported) return {};
  const DWORD header = sizeof(BLOBHEADER) + sizeof(ALG_ID);
  const CERT_INFO& info = *cert->pCertInfo;
  const Bytes id = ber::Write(
      0x30, AsBytes(info.Issuer.pbData, info.Issuer.cbData) +
                ber::Write(0x02, Reversed(AsBytes(info.SerialNumber.pbData, info.SerialNumber.cbData))));
  const Bytes algorithm = ber::Write(0x30, ber::Write(0x06, ber::Oid(kRsa)) + ber::Write(0x05, {}));
  return ber::Write(0x30, ber::Write(0x02, Bytes(1, 0)) + id + algorithm +
                              ber::Write(0x04, Reversed(AsBytes(blob + header, size - header))));
}

const Cipher* CipherByOid(const char* oid) {
  for (const Cipher& cipher : kCiphers) {
    if (std::strcmp(cipher.oid, oid) == 0) return &cipher;
  }
  return nullptr;
}

Bytes CipherParameters(const Cipher& cipher, DWORD bits, const Bytes& vector) {
  if (cipher.id != CALG_RC2) return ber::Write(0x04, vector);
  unsigned version = 0;
  for (const auto& row : kRc2Versions) {
    if (row.bits == bits) version = row.version;
  }
  const Bytes number =
      version < 0x80 ? Bytes(1, static_cast<char>(version)) : Bytes(1, 0) + static_cast<char>(version);
  return ber::Write(0x30, ber::Write(0x02, number) + ber::Write(0x04, vector));
}

BOOL Envelope(PCRYPT_ENCRYPT_MESSAGE_PARA para, DWORD count, PCCERT_CONTEXT* certs, const Bytes& content,
              Bytes* out) {
  const Cipher* const cipher = CipherByOid(para->ContentEncryptionAlgorithm.pszObjId);
  if (cipher == nullptr) return Fail(kBadAlgorithm);
  DWORD bits = 0;
  if (cipher->id == CALG_RC2) {
    bits = para->pvEncryptionAuxInfo == nullptr
               ? 128
               : static_cast<const CMSG_RC2_AUX_INFO*>(para->pvEncryptionAuxInfo)->dwBitLen;
  }
  ContentKey key;
  if (!CryptGenKey(Provider(), cipher->id, CRYPT_EXPORTABLE | CRYPT_NO_SALT | (bits << 16), &key.key))
    return FALSE;
  Bytes vector(cipher->block, '\0');
  CryptGenRandom(Provider(), cipher->block, reinterpret_cast<BYTE*>(vector.data()));
  key.SetUp(vector, bits);
  Bytes recipients;
  for (DWORD i = 0; i < count; ++i) {
    const Bytes info = RecipientInfo(key, certs[i]);
    if (info.empty()) return FALSE;
    recipients += info;
  }
  const Bytes algorithm =
      ber::Write(0x30, ber::Write(0x06, ber::Oid(cipher->oid)) + CipherParameters(*cipher, bits, vector));
  const Bytes inner = ber::Write(
      0x30, ber::Write(0x06, ber::Oid(kData)) + algorithm + ber::Write(0x80, Encrypted(key, content)));
  const Bytes data = ber::Write(0x30, ber::Write(0x02, Bytes(1, 0)) + ber::Write(0x31, recipients) + inner);
  *out = ber::Write(0x30, ber::Write(0x06, ber::Oid(kEnvelopedData)) + ber::Write(0xA0, data));
  return TRUE;
}

// The elements of the message's inner sequence when it is of the type `oid`; last error set otherwise.
std::vector<Element> Opened(const Bytes& message, const char* oid) {
  const std::vector<Element> parts = ber::First(message).Children();
  if (parts.size() < 2 || parts[0].tag != 0x06 || parts[1].tag != 0xA0) {
    SetLastError(kBadTag);
    return {};
  }
  if (parts[0].content != ber::Oid(oid)) {
    SetLastError(kNotThisType);
    return {};
  }
  const std::vector<Element> fields = ber::First(parts[1].content).Children();
  if (fields.size() < 3) SetLastError(kBadTag);
  return fields.size() < 3 ? std::vector<Element>{} : fields;
}

bool IsNamedBy(PCCERT_CONTEXT cert, const Element& issuer_and_serial) {
  const std::vector<Element> id = issuer_and_serial.Children();
  if (issuer_and_serial.tag != 0x30 || id.size() != 2) return false;
  const CERT_INFO& info = *cert->pCertInfo;
  Bytes serial = Reversed(Bytes(id[1].content));
  while (serial.size() > 1 && serial.back() == 0) serial.pop_back();
  Bytes own = AsBytes(info.SerialNumber.pbData, info.SerialNumber.cbData);
  while (own.size() > 1 && own.back() == 0) own.pop_back();
  return AsBytes(info.Issuer.pbData, info.Issuer.cbData) == id[0].whole && own == serial;
}

// The certificate of a store that a recipient is named by; to be freed.
PCCERT_CONTEXT FindRecipient(PCRYPT_DECRYPT_MESSAGE_PARA para, const Element& recipient,
                             Bytes* encrypted_key) {
  const std::vector<Element> fields = recipient.Children();
  if (fields.size() < 4) return nullptr;
  *encrypted_key = fields[3].Joined();
  const auto enumerate = WINE_FUNCTION(CertEnumCertificatesInStore);
  for (DWORD i = 0; i < para->cCertStore; ++i) {
    PCCERT_CONTEXT cert = nullptr;
    while ((cert = enumerate(para->rghCertStore[i], cert)) != nullptr) {
      if (IsNamedBy(cert, fields[1])) return cert;
    }
  }
  return nullptr;
}

// The content key's bytes, decrypted with the private key of `cert`.
Bytes ContentKeyBytes(PCCERT_CONTEXT cert, const Bytes& encrypted_key) {
  HCRYPTPROV_OR_NCRYPT_KEY_HANDLE provider = 0;
  DWORD spec = 0;
  BOOL ours = FALSE;
  if (!WINE_FUNCTION(CryptAcquireCertificatePrivateKey)(cert, 0, nullptr, &provider, &spec, &ours)) return {};
  Bytes bytes = Reversed(encrypted_key);
  auto size = static_cast<DWORD>(bytes.size());
  HCRYPTKEY key = 0;
  const BOOL done = CryptGetUserKey(provider, spec, &key) &&
                    CryptDecrypt(key, 0, TRUE, 0, reinterpret_cast<BYTE*>(bytes.data()), &size);
  if (key != 0) CryptDestroyKey(key);
  if (ours) CryptReleaseContext(provider, 0);
  bytes.resize(done ? size : 0);
  return bytes;
}

BOOL ImportKey(const Cipher& cipher, const Bytes& bytes, ContentKey* key) {
  struct {
    BLOBHEADER header;
    DWORD size;
    BYTE bytes[64];
  } blob{};
  if (bytes.size() > sizeof blob.bytes) return Fail(kBadAlgorithm);
  blob.header = {PLAINTEXTKEYBLOB, CUR_BLOB_VERSION, 0, cipher.id};
  blob.size = static_cast<DWORD>(bytes.size());
  std::memcpy(blob.bytes, bytes.data(), bytes.size());
  return CryptImportKey(Provider(), reinterpret_cast<const BYTE*>(&blob), sizeof blob, 0, CRYPT_NO_SALT,
                        &key->key);
}

BOOL OpenContent(const Element& content_info, const Bytes& key_bytes, Bytes* content) {
  const std::vector<Element> fields = content_info.Children();
  if (fields.size() < 3) return Fail(kBadTag);
  const std::vector<Element> algorithm = fields[1].Children();
  if (algorithm.size() < 2) return Fail(kBadTag);
  const Cipher* cipher = nullptr;
  for (const Cipher& each : kCiphers) {
    if (algorithm[0].content == ber::Oid(each.oid)) cipher = &each;
  }
  if (cipher == nullptr) return Fail(kBadAlgorithm);
  Bytes vector(algorithm[1].content);
  DWORD bits = 0;
  if (cipher->id == CALG_RC2) {
    const std::vector<Element> parameters = algorithm[1].Children();
    if (parameters.size() < 2) return Fail(kBadTag);
    for (const auto& row : kRc2Versions) {
      if (static_cast<unsigned char>(parameters[0].content.back()) == row.version) bits = row.bits;
    }
    vector = Bytes(parameters[1].content);
  }
  ContentKey key;
  if (!ImportKey(*cipher, key_bytes, &key)) return FALSE;
  key.SetUp(vector, bits);
  *content = fields[2].Joined();
  auto size = static_cast<DWORD>(content->size());
  if (!CryptDecrypt(key.key, 0, TRUE, 0, reinterpret_cast<BYTE*>(content->data()), &size)) return FALSE;
  content->resize(size);
  return TRUE;
}

BOOL Open(PCRYPT_DECRYPT_MESSAGE_PARA para, const Bytes& message, Bytes* content) {
  const std::vector<Element> fields = Opened(message, kEnvelopedData);
  if (fields.empty()) return FALSE;
  // Version, perhaps [0] originator, recipients, content.
  const std::size_t recipients = fields[1].tag == 0xA0 ? 2 : 1;
  if (fields.size() < recipients + 2) return Fail(kBadTag);
  for (const Element& recipient : fields[recipients].Children()) {
    Bytes encrypted_key;
    const PCCERT_CONTEXT cert = FindRecipient(para, recipient, &encrypted_key);
    if (cert == nullptr) continue;
    const Bytes key = ContentKeyBytes(cert, encrypted_key);
    WINE_FUNCTION(CertFreeCertificateContext)(cert);
    if (!key.empty()) return OpenContent(fields[recipients + 1], key, content);
  }
  return Fail(kNoDecryptCert);
}

struct Hash {
  const char* oid;
  ALG_ID id;
};
const Hash kHashes[] = {
    {"1.3.14.3.2.26", CALG_SHA1},
    {"1.3.14.3.2.3", CALG_MD5},
    {"1.2.840.113549.2.5", CALG_MD5},
    {"2.16.840.1.101.3.4.2.1", CALG_SHA_256},
    {"2.16.840.1.101.3.4.2.2", CALG_SHA_384},
    {"2.16.840.1.101.3.4.2.3", CALG_SHA_512},
};

struct HashObject {
  HCRYPTHASH hash = 0;
  HashObject(ALG_ID id, const Bytes& data) {
    if (CryptCreateHash(Provider(), id, 0, 0, &hash)) {
      CryptHashData(hash, reinterpret_cast<const BYTE*>(data.data()), static_cast<DWORD>(data.size()), 0);
    }
  }
  ~HashObject() {
    if (hash != 0) CryptDestroyHash(hash);
  }
  Bytes Value() const {
    BYTE value[64];
    DWORD size = sizeof value;
    return CryptGetHashParam(hash, HP_HASHVAL, value, &size, 0) ? AsBytes(value, size) : Bytes();
  }
};

// A signed message, taken apart.
struct Signed {
  Bytes content;
  bool has_content = false;
  std::vector<Element> certs;
  std::vector<Element> signers;
};

BOOL TakeApart(const Bytes& message, Signed* out) {
  const std::vector<Element> fields = Opened(message, kSignedData);
  if (fields.empty()) return FALSE;
  const std::vector<Element> inner = fields[2].Children();  // type, perhaps [0] content
  if (inner.size() > 1) {
    out->has_content = true;
    out->content = ber::First(inner[1].content).Joined();
  }
  for (std::size_t i = 3; i < fields.size(); ++i) {
    if (fields[i].tag == 0xA0) out->certs = fields[i].Children();
    if (fields[i].tag == 0x31) out->signers = fields[i].Children();
  }
  return TRUE;
}

PCCERT_CONTEXT FindSigner(const Signed& message, const Element& id) {
  for (const Element& each : message.certs) {
    const PCCERT_CONTEXT cert = WINE_FUNCTION(CertCreateCertificateContext)(
        X509_ASN_ENCODING | PKCS_7_ASN_ENCODING, reinterpret_cast<const BYTE*>(each.whole.data()),
        static_cast<DWORD>(each.whole.size()));
    if (cert == nullptr) continue;
    if (IsNamedBy(cert, id)) return cert;
    WINE_FUNCTION(CertFreeCertificateContext)(cert);
  }
  return nullptr;
}

// The certificate of signer `index`, verified or not.
PCCERT_CONTEXT NamedSigner(const Signed& message, DWORD index) {
  const std::vector<Element> fields = message.signers[index].Children();
  return fields.size() < 2 ? nullptr : FindSigner(message, fields[1]);
}

// The digest that the signed attributes state.
Bytes StatedDigest(const Element& attributes) {
  for (const Element& attribute : attributes.Children()) {
    const std::vector<Element> parts = attribute.Children();
    if (parts.size() == 2 && parts[0].content == ber::Oid(kMessageDigest)) {
      return Bytes(ber::First(parts[1].content).content);
    }
  }
  return {};
}

BOOL VerifyWith(PCCERT_CONTEXT cert, const HashObject& hash, const Bytes& signature) {
  HCRYPTKEY key = 0;
  if (!WINE_FUNCTION(CryptImportPublicKeyInfo)(Provider(), X509_ASN_ENCODING,
                                               &cert->pCertInfo->SubjectPublicKeyInfo, &key)) {
    return FALSE;
  }
  const Bytes reversed = Reversed(signature);
  const BOOL good = CryptVerifySignatureA(hash.hash, reinterpret_cast<const BYTE*>(reversed.data()),
                                          static_cast<DWORD>(reversed.size()), key, nullptr, 0);
  CryptDestroyKey(key);
  return good ? TRUE : Fail(kBadSignature);
}

// Checks one signer over `content`; its certificate goes to *signer when that is wanted.
BOOL VerifySigner(const Signed& message, DWORD index, const Bytes& content, PCCERT_CONTEXT* signer) {
  if (index >= message.signers.size()) return Fail(kNoSigner);
  const std::vector<Element> fields = message.signers[index].Children();
  if (fields.size() < 5) return Fail(kBadTag);
  const PCCERT_CONTEXT cert = FindSigner(message, fields[1]);
  if (cert == nullptr) return Fail(kSignerNotFound);
  const auto digest_fields = fields[2].Children();
  const Hash* hash = nullptr;
  for (const Hash& each : kHashes) {
    if (!digest_fields.empty() && digest_fields[0].content == ber::Oid(each.oid)) hash = &each;
  }
  BOOL good = hash != nullptr ? TRUE : Fail(kBadAlgorithm);
  const bool has_attributes = fields[3].tag == 0xA0;
  const std::size_t signature = has_attributes ? 5 : 4;
  if (good && has_attributes && HashObject(hash->id, content).Value() != StatedDigest(fields[3])) {
    good = Fail(kHashValue);
  }
  if (good && fields.size() <= signature) good = Fail(kBadTag);
  if (good) {
    Bytes covered = content;
    if (has_attributes) {
      covered = Bytes(fields[3].whole);
      covered[0] = 0x31;
    }
    good = VerifyWith(cert, HashObject(hash->id, covered), fields[signature].Joined());
  }
  const DWORD error = GetLastError();
  if (good && signer != nullptr) {
    *signer = cert;
  } else {
    WINE_FUNCTION(CertFreeCertificateContext)(cert);
  }
  SetLastError(error);
  return good;
}

BOOL VerifyCarried(const Bytes& bytes, DWORD index, BYTE* out, DWORD* size, PCCERT_CONTEXT* signer) {
  Signed message;
  if (!TakeApart(bytes, &message)) return FALSE;
  if (index >= message.signers.size()) return Fail(kNoSigner);
  if (!message.has_content) {
    // "This does not necessarily mean that the signature was verified": the size is 0, the signer is named.
    if (signer != nullptr) *signer = NamedSigner(message, index);
    return Deliver({}, out, size);
  }
  // A call that wants neither the content nor the signer only measures.
  if (out == nullptr && signer == nullptr) return Deliver(message.content, out, size);
  if (!VerifySigner(message, index, message.content, signer)) return FALSE;
  return Deliver(message.content, out, size);
}

}  // namespace

extern "C" {

BOOL WINAPI CryptEncryptMessage(PCRYPT_ENCRYPT_MESSAGE_PARA para, DWORD count, PCCERT_CONTEXT* certs,
                                const BYTE* content, DWORD size, BYTE* out, DWORD* out_size) {
  Bytes message;
  return Envelope(para, count, certs, AsBytes(content, size), &message) && Deliver(message, out, out_size);
}

BOOL WINAPI CryptDecryptMessage(PCRYPT_DECRYPT_MESSAGE_PARA para, const BYTE* message, DWORD size, BYTE* out,
                                DWORD* out_size, PCCERT_CONTEXT* used) {
  if (used != nullptr) *used = nullptr;
  Bytes content;
  return Open(para, AsBytes(message, size), &content) && Deliver(content, out, out_size);
}

BOOL WINAPI CryptSignAndEncryptMessage(PCRYPT_SIGN_MESSAGE_PARA sign, PCRYPT_ENCRYPT_MESSAGE_PARA encrypt,
                                       DWORD count, PCCERT_CONTEXT* certs, const BYTE* content, DWORD size,
                                       BYTE* out, DWORD* out_size) {
  const auto sign_message = WINE_FUNCTION(CryptSignMessage);
  const BYTE* parts[] = {content};
  DWORD sizes[] = {size};
  DWORD signed_size = 0;
  if (!sign_message(sign, FALSE, 1, parts, sizes, nullptr, &signed_size)) return FALSE;
  Bytes inner(signed_size, '\0');
  if (!sign_message(sign, FALSE, 1, parts, sizes, reinterpret_cast<BYTE*>(inner.data()), &signed_size))
    return FALSE;
  inner.resize(signed_size);
  Bytes message;
  return Envelope(encrypt, count, certs, inner, &message) && Deliver(message, out, out_size);
}

BOOL WINAPI CryptVerifyMessageSignature(PCRYPT_VERIFY_MESSAGE_PARA, DWORD index, const BYTE* message,
                                        DWORD size, BYTE* out, DWORD* out_size, PCCERT_CONTEXT* signer) {
  if (signer != nullptr) *signer = nullptr;
  return VerifyCarried(AsBytes(message, size), index, out, out_size, signer);
}

BOOL WINAPI CryptDecryptAndVerifyMessageSignature(PCRYPT_DECRYPT_MESSAGE_PARA decrypt,
                                                  PCRYPT_VERIFY_MESSAGE_PARA, DWORD index,
                                                  const BYTE* message, DWORD size, BYTE* out, DWORD* out_size,
                                                  PCCERT_CONTEXT* used, PCCERT_CONTEXT* signer) {
  if (used != nullptr) *used = nullptr;
  if (signer != nullptr) *signer = nullptr;
  Bytes inner;
  return Open(decrypt, AsBytes(message, size), &inner) && VerifyCarried(inner, index, out, out_size, signer);
}

BOOL WINAPI CryptVerifyDetachedMessageSignature(PCRYPT_VERIFY_MESSAGE_PARA, DWORD index, const BYTE* message,
                                                DWORD size, DWORD parts, const BYTE** part, DWORD* sizes,
                                                PCCERT_CONTEXT* signer) {
  if (signer != nullptr) *signer = nullptr;
  const Bytes bytes = AsBytes(message, size);
  Signed taken;
  if (!TakeApart(bytes, &taken)) return FALSE;
  Bytes content;
  for (DWORD i = 0; i < parts; ++i) content += AsBytes(part[i], sizes[i]);
  return VerifySigner(taken, index, content, signer);
}

// "It returns FALSE if the certificate is on the list": nothing is said of a last error, so there is none.
BOOL WINAPI CertVerifyCRLRevocation(DWORD encoding, PCERT_INFO cert, DWORD count, PCRL_INFO* lists) {
  const DWORD before = GetLastError();
  const BOOL is_good = WINE_FUNCTION(CertVerifyCRLRevocation)(encoding, cert, count, lists);
  SetLastError(before);
  return is_good;
}

// The encoding "must be set to zero".
PCCRL_CONTEXT WINAPI CertFindCRLInStore(HCERTSTORE store, DWORD encoding, DWORD flags, DWORD type,
                                        const void* para, PCCRL_CONTEXT previous) {
  if (encoding == 0) return WINE_FUNCTION(CertFindCRLInStore)(store, 0, flags, type, para, previous);
  if (previous != nullptr) WINE_FUNCTION(CertFreeCRLContext)(previous);
  SetLastError(kBadArgument);
  return nullptr;
}

}  // extern "C"
