// The S/MIME functions on the system's own crypt32 and wintrust: stores in memory, keys of their own that go away.
#include <gtest/gtest.h>

#include "src/bridge/security_state_win.h"
#include "src/smime/smime_engine_win.h"
#include "tests/inside/smime/support.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using wfinfo::smime::SmimeEncryptSign;

constexpr DWORD kEncoding = X509_ASN_ENCODING | PKCS_7_ASN_ENCODING;
const std::string kText = "Content-Type: text/plain\r\n\r\nThe text of a mail.\r\n";

// A certificate that its owner signed, with a key in a container that lives as long. The kit deletes a container of
// these names that a killed test left.
class Person {
 public:
  Person(const char* email, const wchar_t* container) : container_(container) {
    Forget();
    HCRYPTPROV provider = 0;
    HCRYPTKEY key = 0;
    EXPECT_TRUE(CryptAcquireContextW(&provider, container, nullptr, PROV_RSA_AES, CRYPT_NEWKEYSET))
        << GetLastError();
    EXPECT_TRUE(CryptGenKey(provider, AT_KEYEXCHANGE, 2048u << 16, &key)) << GetLastError();
    CryptDestroyKey(key);
    CryptReleaseContext(provider, 0);
    cert_ = SelfSigned(std::string("CN=") + email + ", E=" + email);
    EXPECT_NE(cert_, nullptr) << GetLastError();
  }
  ~Person() {
    CertFreeCertificateContext(cert_);
    Forget();
  }
  Person(const Person&) = delete;
  PCCERT_CONTEXT cert() const { return cert_; }

 private:
  PCCERT_CONTEXT SelfSigned(const std::string& subject) {
    BYTE name[256];
    DWORD size = sizeof name;
    EXPECT_TRUE(CertStrToNameA(X509_ASN_ENCODING, subject.c_str(), CERT_X500_NAME_STR, nullptr, name, &size,
                               nullptr));
    CERT_NAME_BLOB blob{size, name};
    CRYPT_KEY_PROV_INFO info{};
    info.pwszContainerName = container_.data();
    info.dwProvType = PROV_RSA_AES;
    info.dwKeySpec = AT_KEYEXCHANGE;
    CRYPT_ALGORITHM_IDENTIFIER algorithm{};
    algorithm.pszObjId = const_cast<char*>(szOID_RSA_SHA1RSA);
    return CertCreateSelfSignCertificate(0, &blob, 0, &info, &algorithm, nullptr, nullptr, nullptr);
  }
  void Forget() {
    HCRYPTPROV none = 0;
    CryptAcquireContextW(&none, container_.c_str(), nullptr, PROV_RSA_AES, CRYPT_DELETEKEYSET);
  }

  std::wstring container_;
  PCCERT_CONTEXT cert_ = nullptr;
};

// For the entry WinVerifyTrust: nothing is wrong with a certificate. SystemTrust asks the system itself.
LONG WINAPI GoodTrust(HWND, GUID*, void*) { return ERROR_SUCCESS; }

class SystemSmime : public testing::Test {
 protected:
  SystemSmime() {
    // Nobody's authority vouches for these certificates, which would be refused before anything is made.
    crypto_.replaced["CertGetCertificateChain"] = reinterpret_cast<void*>(&GoodChain);
    crypto_.replaced["CertFreeCertificateChain"] = reinterpret_cast<void*>(&CertFreeCertificateChain);
    crypto_.replaced["WinVerifyTrust"] = reinterpret_cast<void*>(&GoodTrust);
    crypto_.Store("My").Add(alice_.cert());
    crypto_.Store("AddressBook").Add(bob_.cert());
  }
  void LetBobRead() { crypto_.Store("My").Add(bob_.cert()); }

  std::string Made(int mode, const char* recipients, const char* signer, int algorithm = 7, int hash = 0) {
    const char* const made = SmimeEncryptSign(mode, kText.c_str(), recipients, signer, algorithm, hash, 0);
    const std::string message(made, PgpGetSMIMEOutputSize());
    EXPECT_FALSE(message.empty()) << Boxes();
    return message;
  }
  std::string Decrypted(const std::string& message) {
    const char* const text = SMIMEDecrypt(message.data(), static_cast<unsigned>(message.size()), nullptr);
    return {text, PgpGetSMIMEOutputSize()};
  }
  static void Verify(const std::string& message, const char* content, std::size_t size) {
    SMIMEVerify(message.data(), static_cast<unsigned>(message.size()), content, static_cast<unsigned>(size),
                nullptr, nullptr);
  }
  // What the boxes said.
  std::string Boxes() {
    std::string all;
    for (const auto& box : boxes_.boxes()) all += box.text + "\n";
    return all;
  }

  ScriptedHost host_;
  CountedCrypto crypto_;
  BoxCloser boxes_;
  Person alice_{"alice@example.org", L"wfinfo-kit-alice"};
  Person bob_{"bob@example.org", L"wfinfo-kit-bob"};
};

struct Named {
  const char* name;
  int selector;
};
std::string NameOfCase(const testing::TestParamInfo<Named>& info) { return info.param.name; }

class Cipher : public SystemSmime, public testing::WithParamInterface<Named> {};
TEST_P(Cipher, WhatIsEncryptedIsReadByItsRecipient) {
  LetBobRead();
  const std::string message = Made(0, "bob@example.org", nullptr, GetParam().selector);
  EXPECT_EQ(message.find("The text of a mail"), message.npos);
  EXPECT_EQ(Decrypted(message), kText);
  EXPECT_EQ(Boxes(), "");
}
INSTANTIATE_TEST_SUITE_P(System, Cipher,
                         testing::Values(Named{"Rc2WithoutALength", 0}, Named{"TripleDes", 1},
                                         Named{"Des", 2}, Named{"Rc2Of128Bits", 3}, Named{"Rc2Of64Bits", 4},
                                         Named{"Rc2Of40Bits", 5}, Named{"Aes128", 6}, Named{"Aes256", 7}),
                         NameOfCase);

class Hash : public SystemSmime, public testing::WithParamInterface<Named> {};
TEST_P(Hash, ADetachedSignatureIsGoodForItsTextAlone) {
  const std::string message = Made(1, nullptr, "alice@example.org", 7, GetParam().selector);
  EXPECT_EQ(message.find("The text of a mail"), message.npos);
  Verify(message, kText.data(), kText.size());
  EXPECT_EQ(wfinfo::g_signatureState, 1) << wfinfo::PgpInfoText();
  std::string altered = kText;
  altered[30] ^= 1;
  Verify(message, altered.data(), altered.size());
  EXPECT_EQ(wfinfo::g_signatureState, 0) << wfinfo::PgpInfoText();
  EXPECT_EQ(Boxes(), "");
}
INSTANTIATE_TEST_SUITE_P(System, Hash,
                         testing::Values(Named{"Sha256", 0}, Named{"Sha1", 1}, Named{"Md5ByItsOldNumber", 2},
                                         Named{"Sha512", 4}),
                         NameOfCase);

TEST_F(SystemSmime, WhatIsSignedAndEncryptedIsBothWhenItIsOpened) {
  LetBobRead();
  const std::string message = Made(2, "bob@example.org", "alice@example.org");
  const std::string inner = Decrypted(message);
  ASSERT_FALSE(inner.empty()) << wfinfo::PgpInfoText();
  Verify(inner, nullptr, 0);
  EXPECT_EQ(wfinfo::g_signatureState, 1) << wfinfo::PgpInfoText();
  EXPECT_EQ(PgpGetSMIMEOutputSize(), kText.size() + 1) << "the terminating zero is part of it";
  EXPECT_EQ(Boxes(), "");
}

TEST_F(SystemSmime, AMessageForSomebodyElseIsNotDecrypted) {
  const std::string message = Made(0, "bob@example.org", nullptr);
  EXPECT_EQ(Decrypted(message), "");
  EXPECT_NE(Boxes().find("The certificate for decryption not found"), std::string::npos) << Boxes();
  EXPECT_NE(Boxes().find("0x8009200C"), std::string::npos) << Boxes();
}

TEST_F(SystemSmime, AnEnvelopeWithOneOtherByteDoesNotGiveTheText) {
  LetBobRead();
  std::string message = Made(0, "bob@example.org", nullptr);
  message[message.size() - 40] ^= 1;
  EXPECT_NE(Decrypted(message), kText);
}

TEST_F(SystemSmime, ADetachedSignatureWithoutItsTextIsNotGood) {
  const std::string message = Made(1, nullptr, "alice@example.org");
  Verify(message, nullptr, 0);
  EXPECT_EQ(wfinfo::g_signatureState, 0) << wfinfo::PgpInfoText();
}

// --- WinVerifyTrust ---

TEST(SystemTrust, ACertificateOfNobodyIsRefused) {
  const ScriptedHost host;
  const Person stranger("stranger@example.org", L"wfinfo-kit-alice");
  EXPECT_NE(SMIMEVerifyCertificateByWinVerifyTrust_Cert(0, stranger.cert()), 0u);
}

TEST(SystemTrust, AnExpiredCertificateIsRefused) {
  const ScriptedHost host;
  Authority root("Root");
  CertSpec spec = ForEmail("old@example.org");
  spec.from_days = -20;
  spec.to_days = -10;
  const PCCERT_CONTEXT old = root.Issue(spec);
  EXPECT_NE(SMIMEVerifyCertificateByWinVerifyTrust_Cert(0, old), 0u);
  CertFreeCertificateContext(old);
}

TEST(SystemTrust, ARootOfThisMachineIsAccepted) {
  const ScriptedHost host;
  const HCERTSTORE store = CertOpenSystemStoreA(0, "ROOT");
  ASSERT_NE(store, nullptr);
  int valid = 0;
  bool accepted = false;
  for (PCCERT_CONTEXT cert = nullptr; (cert = CertEnumCertificatesInStore(store, cert)) != nullptr;) {
    if (CertVerifyTimeValidity(nullptr, cert->pCertInfo) != 0) continue;
    ++valid;
    accepted = accepted || SMIMEVerifyCertificateByWinVerifyTrust_Cert(0, cert) == 0;
  }
  CertCloseStore(store, 0);
  if (valid == 0) GTEST_SKIP() << "the store ROOT of this machine holds no valid certificate";
  EXPECT_TRUE(accepted) << "none of " << valid << " roots";
}

TEST(SystemTrust, TheReportCallsAnUnknownRootAProblem) {
  const ScriptedHost host;
  const Person stranger("stranger@example.org", L"wfinfo-kit-alice");
  const std::string report = SMIMEVerifyCertificate(stranger.cert(), nullptr);
  EXPECT_NE(report.find("based on an untrusted root"), report.npos) << report;
}

// --- Revocation ---

TEST(SystemRevocation, TheSystemFindsACertificateOnTheListOfItsAuthority) {
  Authority root("Root");
  const PCCERT_CONTEXT revoked = root.Issue(ForEmail("eve@example.org"));
  const PCCERT_CONTEXT fine = root.Issue(ForEmail("bob@example.org"));
  const std::string der = root.Revoke({revoked});
  PCCRL_CONTEXT list = CertCreateCRLContext(kEncoding, reinterpret_cast<const BYTE*>(der.data()),
                                            static_cast<DWORD>(der.size()));
  ASSERT_NE(list, nullptr);
  PCRL_INFO info[] = {list->pCrlInfo};
  EXPECT_FALSE(CertVerifyCRLRevocation(X509_ASN_ENCODING, revoked->pCertInfo, 1, info));
  EXPECT_TRUE(CertVerifyCRLRevocation(X509_ASN_ENCODING, fine->pCertInfo, 1, info));
  CertFreeCRLContext(list);
  CertFreeCertificateContext(revoked);
  CertFreeCertificateContext(fine);
}

}  // namespace
}  // namespace wfinfo_test
