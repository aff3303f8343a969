#include "tests/inside/smime/support.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <mutex>
#include <set>

#include "src/bridge/module_win.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {

using wfinfo::smime::g_crypto;
using wfinfo::smime::g_cryptoLoader;

void UseThisModule() { wfinfo::g_hInstance = GetModuleHandleA(nullptr); }

FILETIME DaysFromNow(int days) {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  ULARGE_INTEGER ticks{{now.dwLowDateTime, now.dwHighDateTime}};
  ticks.QuadPart += static_cast<ULONGLONG>(static_cast<long long>(days) * 864000000000LL);
  return {ticks.LowPart, ticks.HighPart};
}

namespace {

constexpr DWORD kEncoding = X509_ASN_ENCODING | PKCS_7_ASN_ENCODING;

// Few keys, made when first needed.
HCRYPTPROV SharedKey(int index) {
  static HCRYPTPROV keys[3] = {};
  HCRYPTPROV& provider = keys[index];
  if (provider != 0) return provider;
  EXPECT_TRUE(CryptAcquireContextA(&provider, nullptr, nullptr, PROV_RSA_AES, CRYPT_VERIFYCONTEXT))
      << GetLastError();
  HCRYPTKEY key = 0;
  EXPECT_TRUE(CryptGenKey(provider, AT_SIGNATURE, 1024u << 16, &key)) << GetLastError();
  CryptDestroyKey(key);
  return provider;
}

std::string Encode(LPCSTR type, const void* object) {
  DWORD size = 0;
  EXPECT_TRUE(CryptEncodeObject(kEncoding, type, object, nullptr, &size)) << GetLastError();
  std::string encoded(size, '\0');
  EXPECT_TRUE(CryptEncodeObject(kEncoding, type, object, reinterpret_cast<BYTE*>(encoded.data()), &size));
  encoded.resize(size);
  return encoded;
}

template <class Blob>
Blob AsBlob(const std::string& bytes) {
  return {static_cast<DWORD>(bytes.size()), reinterpret_cast<BYTE*>(const_cast<char*>(bytes.data()))};
}

std::string EncodeName(const CertSpec& spec) {
  std::vector<CERT_RDN_ATTR> attributes;
  const auto add = [&attributes](const char* oid, DWORD type, const std::string& value) {
    attributes.push_back({const_cast<char*>(oid), type, AsBlob<CERT_RDN_VALUE_BLOB>(value)});
  };
  if (!spec.name.empty()) add(szOID_COMMON_NAME, CERT_RDN_PRINTABLE_STRING, spec.name);
  for (const std::string& email : spec.emails) add(szOID_RSA_emailAddr, CERT_RDN_IA5_STRING, email);
  for (const std::wstring& email : spec.utf8_emails) {
    attributes.push_back({const_cast<char*>(szOID_RSA_emailAddr),
                          CERT_RDN_UTF8_STRING,
                          {static_cast<DWORD>(email.size() * sizeof(wchar_t)),
                           reinterpret_cast<BYTE*>(const_cast<wchar_t*>(email.c_str()))}});
  }
  std::vector<CERT_RDN> parts;
  for (CERT_RDN_ATTR& attribute : attributes) parts.push_back({1, &attribute});
  const CERT_NAME_INFO name = {static_cast<DWORD>(parts.size()), parts.data()};
  return Encode(X509_NAME, &name);
}

std::string EncodeAltNames(const std::vector<std::string>& emails) {
  std::vector<std::wstring> wide;
  for (const std::string& email : emails) wide.emplace_back(email.begin(), email.end());
  // A name of another kind in front: only e-mail names count.
  std::wstring host = L"host.example.org";
  std::vector<CERT_ALT_NAME_ENTRY> entries(1 + wide.size());
  entries[0].dwAltNameChoice = CERT_ALT_NAME_DNS_NAME;
  entries[0].pwszDNSName = host.data();
  for (std::size_t i = 0; i < wide.size(); ++i) {
    entries[i + 1].dwAltNameChoice = CERT_ALT_NAME_RFC822_NAME;
    entries[i + 1].pwszRfc822Name = wide[i].data();
  }
  const CERT_ALT_NAME_INFO names = {static_cast<DWORD>(entries.size()), entries.data()};
  return Encode(X509_ALTERNATE_NAME, &names);
}

std::string EncodeCrlUrls(const std::vector<std::string>& urls) {
  std::vector<std::wstring> wide;
  for (const std::string& url : urls) wide.emplace_back(url.begin(), url.end());
  std::vector<CERT_ALT_NAME_ENTRY> entries(wide.size());
  std::vector<CRL_DIST_POINT> points(wide.size());
  for (std::size_t i = 0; i < wide.size(); ++i) {
    entries[i].dwAltNameChoice = CERT_ALT_NAME_URL;
    entries[i].pwszURL = wide[i].data();
    points[i].DistPointName.dwDistPointNameChoice = CRL_DIST_POINT_FULL_NAME;
    points[i].DistPointName.FullName = {1, &entries[i]};
  }
  const CRL_DIST_POINTS_INFO info = {static_cast<DWORD>(points.size()), points.data()};
  return Encode(X509_CRL_DIST_POINTS, &info);
}

struct PublicKey {
  std::string bytes;
  CERT_PUBLIC_KEY_INFO* info() { return reinterpret_cast<CERT_PUBLIC_KEY_INFO*>(bytes.data()); }
};

PublicKey PublicKeyOf(HCRYPTPROV key) {
  DWORD size = 0;
  CryptExportPublicKeyInfo(key, AT_SIGNATURE, X509_ASN_ENCODING, nullptr, &size);
  PublicKey out{std::string(size, '\0')};
  EXPECT_TRUE(CryptExportPublicKeyInfo(key, AT_SIGNATURE, X509_ASN_ENCODING, out.info(), &size))
      << GetLastError();
  return out;
}

std::string Sign(HCRYPTPROV key, LPCSTR type, const void* info) {
  CRYPT_ALGORITHM_IDENTIFIER algorithm{};
  algorithm.pszObjId = const_cast<char*>(szOID_RSA_SHA1RSA);
  DWORD size = 0;
  EXPECT_TRUE(CryptSignAndEncodeCertificate(key, AT_SIGNATURE, X509_ASN_ENCODING, type, info, &algorithm,
                                            nullptr, nullptr, &size))
      << GetLastError();
  std::string encoded(size, '\0');
  EXPECT_TRUE(CryptSignAndEncodeCertificate(key, AT_SIGNATURE, X509_ASN_ENCODING, type, info, &algorithm,
                                            nullptr, reinterpret_cast<BYTE*>(encoded.data()), &size));
  encoded.resize(size);
  return encoded;
}

unsigned NextSerial() {
  static unsigned serial = 1000;
  return ++serial;
}

int KeyIndexOf(const Authority* issuer) { return issuer == nullptr ? 0 : 1; }

}  // namespace

PCCERT_CONTEXT Authority::Build(const CertSpec& spec, HCRYPTPROV issuer_key, const CERT_NAME_BLOB& issuer,
                                HCRYPTPROV subject_key) {
  unsigned serial = NextSerial();
  const std::string subject = EncodeName(spec);
  PublicKey key = PublicKeyOf(subject_key);
  std::vector<CERT_EXTENSION> extensions;
  std::vector<std::string> values;
  values.reserve(8);
  const auto add = [&](const char* oid, std::string value) {
    values.push_back(std::move(value));
    extensions.push_back({const_cast<char*>(oid), FALSE, AsBlob<CRYPT_OBJID_BLOB>(values.back())});
  };
  if (!spec.old_alt_emails.empty()) add("2.5.29.7", EncodeAltNames(spec.old_alt_emails));
  if (!spec.alt_emails.empty()) add("2.5.29.17", EncodeAltNames(spec.alt_emails));
  if (!spec.encoded_alt_names.empty()) add("2.5.29.17", spec.encoded_alt_names);
  if (!spec.crl_urls.empty()) add("2.5.29.31", EncodeCrlUrls(spec.crl_urls));
  if (spec.is_authority) {
    const CERT_BASIC_CONSTRAINTS2_INFO constraints = {TRUE, FALSE, 0};
    add(szOID_BASIC_CONSTRAINTS2, Encode(X509_BASIC_CONSTRAINTS2, &constraints));
  }
  CERT_INFO info{};
  info.dwVersion = CERT_V3;
  info.SerialNumber = {sizeof serial, reinterpret_cast<BYTE*>(&serial)};
  info.SignatureAlgorithm.pszObjId = const_cast<char*>(szOID_RSA_SHA1RSA);
  info.Issuer = issuer.cbData != 0 ? issuer : AsBlob<CERT_NAME_BLOB>(subject);
  info.NotBefore = DaysFromNow(spec.from_days);
  info.NotAfter = DaysFromNow(spec.to_days);
  info.Subject = AsBlob<CERT_NAME_BLOB>(subject);
  info.SubjectPublicKeyInfo = *key.info();
  info.cExtension = static_cast<DWORD>(extensions.size());
  info.rgExtension = extensions.data();
  const std::string der = Sign(issuer_key, X509_CERT_TO_BE_SIGNED, &info);
  const PCCERT_CONTEXT cert = CertCreateCertificateContext(
      kEncoding, reinterpret_cast<const BYTE*>(der.data()), static_cast<DWORD>(der.size()));
  EXPECT_NE(cert, nullptr) << GetLastError();
  return cert;
}

std::string EncodedMailNames(const std::vector<std::string>& mail_names) {
  std::string names;
  for (const std::string& name : mail_names) {
    names += '\x81';
    names += static_cast<char>(name.size());
    names += name;
  }
  EXPECT_LT(names.size(), 0x80u);
  std::string encoded = "\x30";
  encoded += static_cast<char>(names.size());
  encoded += names;
  return encoded;
}

Authority::Authority(const std::string& name, Authority* issuer, CertSpec spec)
    : key_(SharedKey(KeyIndexOf(issuer))) {
  spec.name = name;
  spec.is_authority = true;
  cert_ = issuer == nullptr ? Build(spec, key_, {}, key_)
                            : Build(spec, issuer->key_, issuer->cert_->pCertInfo->Subject, key_);
}

Authority::~Authority() { CertFreeCertificateContext(cert_); }

PCCERT_CONTEXT Authority::Issue(const CertSpec& spec) {
  return Build(spec, key_, cert_->pCertInfo->Subject, SharedKey(2));
}

std::string Authority::IssueDer(const CertSpec& spec) {
  const PCCERT_CONTEXT cert = Issue(spec);
  std::string der(reinterpret_cast<const char*>(cert->pbCertEncoded), cert->cbCertEncoded);
  CertFreeCertificateContext(cert);
  return der;
}

std::string Authority::Revoke(const std::vector<PCCERT_CONTEXT>& revoked, int from_days, int to_days) {
  std::vector<CRL_ENTRY> entries;
  for (const PCCERT_CONTEXT cert : revoked) {
    entries.push_back({cert->pCertInfo->SerialNumber, DaysFromNow(from_days), 0, nullptr});
  }
  CRL_INFO info{};
  info.dwVersion = CRL_V2;
  info.SignatureAlgorithm.pszObjId = const_cast<char*>(szOID_RSA_SHA1RSA);
  info.Issuer = cert_->pCertInfo->Subject;
  info.ThisUpdate = DaysFromNow(from_days);
  info.NextUpdate = DaysFromNow(to_days);
  info.cCRLEntry = static_cast<DWORD>(entries.size());
  info.rgCRLEntry = entries.data();
  return Sign(key_, X509_CERT_CRL_TO_BE_SIGNED, &info);
}

MemoryStore::MemoryStore()
    : store_(CertOpenStore(CERT_STORE_PROV_MEMORY, 0, 0, CERT_STORE_CREATE_NEW_FLAG, nullptr)) {
  EXPECT_NE(store_, nullptr);
}
MemoryStore::~MemoryStore() {
  for (const PCCERT_CONTEXT cert : added_) CertFreeCertificateContext(cert);
  CertCloseStore(store_, 0);
}
void MemoryStore::Add(PCCERT_CONTEXT cert) {
  added_.push_back(CertDuplicateCertificateContext(cert));
  // A store may give the newest first: start again from the end then.
  for (PCCERT_CONTEXT held = nullptr; (held = CertEnumCertificatesInStore(store_, nullptr)) != nullptr;) {
    CertDeleteCertificateFromStore(held);
  }
  for (auto each = added_.rbegin(); each != added_.rend(); ++each) {
    EXPECT_TRUE(CertAddCertificateContextToStore(store_, *each, CERT_STORE_ADD_ALWAYS, nullptr))
        << GetLastError();
  }
}

namespace {

// What the library holds, by entry through which it came and went.
struct Counts {
  int certs = 0;
  int stores = 0;
  int chains = 0;
  int crls = 0;
  std::map<std::string, std::unique_ptr<MemoryStore>> system_stores;
};

Counts* g_counts = nullptr;
CountedCrypto* g_counted = nullptr;
wfinfo::smime::CryptoLoader g_realLoader;

bool Contains(const std::vector<std::string>& list, const std::string& item) {
  for (const std::string& each : list) {
    if (each == item) return true;
  }
  return false;
}

HCERTSTORE WINAPI OpenSystemStore(HCRYPTPROV_LEGACY provider, LPCSTR name) {
  if (g_counted->uses_real_stores) {
    ++g_counts->stores;
    return CertOpenSystemStoreA(provider, name);
  }
  if (Contains(g_counted->missing_stores, name)) {
    SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
  }
  ++g_counts->stores;
  return CertDuplicateStore(g_counted->Store(name).get());
}
BOOL WINAPI CloseStore(HCERTSTORE store, DWORD flags) {
  EXPECT_EQ(flags, static_cast<DWORD>(CERT_CLOSE_STORE_CHECK_FLAG));
  --g_counts->stores;
  return CertCloseStore(store, flags & ~static_cast<DWORD>(CERT_CLOSE_STORE_CHECK_FLAG));
}
PCCERT_CONTEXT WINAPI Duplicate(PCCERT_CONTEXT cert) {
  ++g_counts->certs;
  return CertDuplicateCertificateContext(cert);
}
BOOL WINAPI FreeCertificate(PCCERT_CONTEXT cert) {
  if (cert != nullptr) --g_counts->certs;
  return CertFreeCertificateContext(cert);
}
PCCERT_CONTEXT WINAPI Enumerate(HCERTSTORE store, PCCERT_CONTEXT previous) {
  if (previous != nullptr) --g_counts->certs;
  const PCCERT_CONTEXT next = CertEnumCertificatesInStore(store, previous);
  if (next != nullptr) ++g_counts->certs;
  return next;
}
PCCERT_CONTEXT WINAPI FindCertificate(HCERTSTORE store, DWORD encoding, DWORD flags, DWORD type,
                                      const void* para, PCCERT_CONTEXT previous) {
  if (previous != nullptr) --g_counts->certs;
  const PCCERT_CONTEXT found = CertFindCertificateInStore(store, encoding, flags, type, para, previous);
  if (found != nullptr) ++g_counts->certs;
  return found;
}
BOOL WINAPI GetChain(HCERTCHAINENGINE engine, PCCERT_CONTEXT cert, LPFILETIME time, HCERTSTORE store,
                     PCERT_CHAIN_PARA para, DWORD flags, LPVOID reserved, PCCERT_CHAIN_CONTEXT* chain) {
  const BOOL done = CertGetCertificateChain(engine, cert, time, store, para, flags, reserved, chain);
  if (done) ++g_counts->chains;
  return done;
}
void WINAPI FreeChain(PCCERT_CHAIN_CONTEXT chain) {
  --g_counts->chains;
  CertFreeCertificateChain(chain);
}
PCCRL_CONTEXT WINAPI CreateCrl(DWORD encoding, const BYTE* bytes, DWORD size) {
  const PCCRL_CONTEXT crl = CertCreateCRLContext(encoding, bytes, size);
  if (crl != nullptr) ++g_counts->crls;
  return crl;
}
PCCRL_CONTEXT WINAPI FindCrl(HCERTSTORE store, DWORD encoding, DWORD flags, DWORD type, const void* para,
                             PCCRL_CONTEXT previous) {
  if (previous != nullptr) --g_counts->crls;
  const PCCRL_CONTEXT found = CertFindCRLInStore(store, encoding, flags, type, para, previous);
  if (found != nullptr) ++g_counts->crls;
  return found;
}
BOOL WINAPI FreeCrl(PCCRL_CONTEXT crl) {
  --g_counts->crls;
  return CertFreeCRLContext(crl);
}
HCERTSTORE WINAPI MessageCertificates(DWORD encoding, HCRYPTPROV_LEGACY provider, DWORD flags,
                                      const BYTE* bytes, DWORD size) {
  const HCERTSTORE store = CryptGetMessageCertificates(encoding, provider, flags, bytes, size);
  if (store != nullptr) ++g_counts->stores;
  return store;
}
BOOL WINAPI VerifySignature(PCRYPT_VERIFY_MESSAGE_PARA para, DWORD index, const BYTE* bytes, DWORD size,
                            BYTE* content, DWORD* content_size, PCCERT_CONTEXT* signer) {
  const BOOL done = CryptVerifyMessageSignature(para, index, bytes, size, content, content_size, signer);
  if (done && signer != nullptr && *signer != nullptr) ++g_counts->certs;
  return done;
}
BOOL WINAPI VerifyDetached(PCRYPT_VERIFY_MESSAGE_PARA para, DWORD index, const BYTE* bytes, DWORD size,
                           DWORD parts, const BYTE** content, DWORD* sizes, PCCERT_CONTEXT* signer) {
  const BOOL done =
      CryptVerifyDetachedMessageSignature(para, index, bytes, size, parts, content, sizes, signer);
  if (done && signer != nullptr && *signer != nullptr) ++g_counts->certs;
  return done;
}
BOOL WINAPI DecryptAndVerify(PCRYPT_DECRYPT_MESSAGE_PARA decryption, PCRYPT_VERIFY_MESSAGE_PARA para,
                             DWORD index, const BYTE* bytes, DWORD size, BYTE* content, DWORD* content_size,
                             PCCERT_CONTEXT* recipient, PCCERT_CONTEXT* signer) {
  const BOOL done = CryptDecryptAndVerifyMessageSignature(decryption, para, index, bytes, size, content,
                                                          content_size, recipient, signer);
  if (done && signer != nullptr && *signer != nullptr) ++g_counts->certs;
  return done;
}

template <class Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

void* CountedEntry(HMODULE module, const char* name) {
  static const std::map<std::string, void*> counted = {
      {"CertOpenSystemStoreA", Address(&OpenSystemStore)},
      {"CertCloseStore", Address(&CloseStore)},
      {"CertDuplicateCertificateContext", Address(&Duplicate)},
      {"CertFreeCertificateContext", Address(&FreeCertificate)},
      {"CertEnumCertificatesInStore", Address(&Enumerate)},
      {"CertFindCertificateInStore", Address(&FindCertificate)},
      {"CertGetCertificateChain", Address(&GetChain)},
      {"CertFreeCertificateChain", Address(&FreeChain)},
      {"CertCreateCRLContext", Address(&CreateCrl)},
      {"CertFindCRLInStore", Address(&FindCrl)},
      {"CertFreeCRLContext", Address(&FreeCrl)},
      {"CryptGetMessageCertificates", Address(&MessageCertificates)},
      {"CryptVerifyMessageSignature", Address(&VerifySignature)},
      {"CryptVerifyDetachedMessageSignature", Address(&VerifyDetached)},
      {"CryptDecryptAndVerifyMessageSignature", Address(&DecryptAndVerify)},
  };
  if (Contains(g_counted->missing_entries, name)) return nullptr;
  const auto replaced = g_counted->replaced.find(name);
  if (replaced != g_counted->replaced.end()) return replaced->second;
  const auto found = counted.find(name);
  return found != counted.end() ? found->second : g_realLoader.entry(module, name);
}

HMODULE CountedLoad(const char* path) {
  const char* const name = std::strrchr(path, '\\');
  if (name != nullptr && Contains(g_counted->missing_modules, name + 1)) {
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
  }
  return g_realLoader.load(path);
}

}  // namespace

CountedCrypto::CountedCrypto() {
  g_counts = new Counts;
  g_counted = this;
  g_realLoader = g_cryptoLoader;
  g_cryptoLoader = {&CountedLoad, &CountedEntry};
  g_crypto = {};  // bound anew through these
}

CountedCrypto::~CountedCrypto() {
  g_cryptoLoader = g_realLoader;
  g_crypto = {};
  delete g_counts;
  g_counts = nullptr;
  g_counted = nullptr;
}

MemoryStore& CountedCrypto::Store(const std::string& name) {
  auto& store = g_counts->system_stores[name];
  if (!store) store = std::make_unique<MemoryStore>();
  return *store;
}

int CountedCrypto::open_certs() const { return g_counts->certs; }
int CountedCrypto::open_stores() const { return g_counts->stores; }
int CountedCrypto::open_chains() const { return g_counts->chains; }
int CountedCrypto::open_crls() const { return g_counts->crls; }

void CountedCrypto::ExpectBalance(int certs, int stores) const {
  EXPECT_EQ(open_certs(), certs);
  EXPECT_EQ(open_stores(), stores);
  EXPECT_EQ(open_chains(), 0);
  EXPECT_EQ(open_crls(), 0);
}

struct DialogDriver::State {
  int control_id;
  std::function<void(HWND)> act;
  std::atomic<bool> stop{false};
  std::atomic<int> count{0};
};

DialogDriver::DialogDriver(int control_id, std::function<void(HWND)> act)
    : state_(std::make_shared<State>()) {
  state_->control_id = control_id;
  state_->act = std::move(act);
  thread_ = std::thread([state = state_] {
    std::set<HWND> seen;
    while (!state->stop) {
      for (const HWND dialog : OwnDialogs()) {
        if (seen.count(dialog) != 0 || GetDlgItem(dialog, state->control_id) == nullptr) continue;
        seen.insert(dialog);
        ++state->count;
        state->act(dialog);
      }
      Sleep(5);
    }
  });
}

DialogDriver::DialogDriver(int control_id, int button)
    : DialogDriver(control_id, [button](HWND dialog) { Press(dialog, button); }) {}

DialogDriver::~DialogDriver() {
  state_->stop = true;
  thread_.join();
}

int DialogDriver::count() const { return state_->count; }

BOOL WINAPI GoodChain(HCERTCHAINENGINE engine, PCCERT_CONTEXT cert, LPFILETIME time, HCERTSTORE store,
                      PCERT_CHAIN_PARA para, DWORD flags, LPVOID reserved, PCCERT_CHAIN_CONTEXT* chain) {
  const BOOL done = CertGetCertificateChain(engine, cert, time, store, para, flags, reserved, chain);
  if (done) const_cast<CERT_CHAIN_CONTEXT*>(*chain)->TrustStatus.dwErrorStatus = 0;
  return done;
}

void Press(HWND dialog, int button) { PostMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0); }

std::string TextOf(HWND dialog, int control) {
  char text[1024] = "";
  SendMessageA(GetDlgItem(dialog, control), WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
  return text;
}

std::string HostTextOf(HWND control) {
  std::wstring wide(65536, L'\0');
  wide.resize(static_cast<std::size_t>(
      SendMessageW(control, WM_GETTEXT, wide.size(), reinterpret_cast<LPARAM>(wide.data()))));
  std::string out;
  for (const wchar_t unit : wide) {
    char bytes[4];
    BOOL lost = FALSE;
    // The good mark may have come as UTF-16; all else came as bytes of the system's code page.
    const UINT page = unit == 0x25CB ? 932 : CP_ACP;
    out.append(bytes,
               static_cast<std::size_t>(WideCharToMultiByte(page, 0, &unit, 1, bytes, 4, nullptr, &lost)));
  }
  return out;
}

std::vector<std::string> LinesOf(HWND dialog, int list) {
  std::vector<std::string> lines;
  const HWND box = GetDlgItem(dialog, list);
  const auto count = SendMessageA(box, LB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    char text[1024] = "";
    SendMessageA(box, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
    lines.emplace_back(text);
  }
  return lines;
}

}  // namespace wfinfo_test
