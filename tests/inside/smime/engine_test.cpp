// What the engine asks of CryptoAPI, with the three making functions replaced by recorders.
#include <gtest/gtest.h>

#include "src/bridge/security_state_win.h"
#include "src/smime/smime_engine_win.h"
#include "tests/inside/smime/support.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::smime;

// What the last call was given.
struct Recorded {
  int calls = 0;
  std::string content;
  std::string cipher;
  DWORD rc2_bits = 0;
  std::string hash;
  DWORD carried = 0;
  DWORD recipients = 0;
  bool detached = false;
  DWORD attributes = 0;
  bool fails = false;
} g_recorded;

BOOL Produce(BYTE* out, DWORD* size) {
  ++g_recorded.calls;
  SetLastError(0x1234);
  if (g_recorded.fails) return FALSE;
  // The first answer is an upper bound, as CryptoAPI's may be.
  if (out == nullptr) {
    *size = 100;
    return TRUE;
  }
  EXPECT_EQ(*size, 100u);
  for (int i = 0; i < 228; ++i) EXPECT_EQ(out[i], 0) << "the block comes zeroed, with 128 spare bytes";
  std::fill_n(out, 60, static_cast<BYTE>('m'));
  *size = 60;
  return TRUE;
}
void Record(PCRYPT_ENCRYPT_MESSAGE_PARA para, DWORD recipients) {
  EXPECT_EQ(para->cbSize, sizeof *para);
  EXPECT_EQ(para->dwMsgEncodingType, static_cast<DWORD>(X509_ASN_ENCODING | PKCS_7_ASN_ENCODING));
  g_recorded.cipher = para->ContentEncryptionAlgorithm.pszObjId;
  g_recorded.recipients = recipients;
  g_recorded.rc2_bits = 0;
  if (para->pvEncryptionAuxInfo == nullptr) return;
  const auto& rc2 = *static_cast<const CMSG_RC2_AUX_INFO*>(para->pvEncryptionAuxInfo);
  EXPECT_EQ(rc2.cbSize, 8u);
  g_recorded.rc2_bits = rc2.dwBitLen;
}
void Record(PCRYPT_SIGN_MESSAGE_PARA para) {
  EXPECT_EQ(para->cbSize, sizeof *para);
  g_recorded.hash = para->HashAlgorithm.pszObjId;
  g_recorded.carried = para->cMsgCert;
  g_recorded.attributes = para->cAuthAttr + para->cUnauthAttr + para->cMsgCrl;
  for (DWORD i = 0; i < para->cMsgCert; ++i) EXPECT_NE(para->rgpMsgCert[i], nullptr);
}
BOOL WINAPI Encrypt(PCRYPT_ENCRYPT_MESSAGE_PARA para, DWORD count, PCCERT_CONTEXT*, const BYTE* bytes,
                    DWORD size, BYTE* out, DWORD* out_size) {
  Record(para, count);
  g_recorded.content.assign(reinterpret_cast<const char*>(bytes), size);
  return Produce(out, out_size);
}
BOOL WINAPI Sign(PCRYPT_SIGN_MESSAGE_PARA para, BOOL detached, DWORD count, const BYTE** bytes, DWORD* sizes,
                 BYTE* out, DWORD* out_size) {
  Record(para);
  EXPECT_EQ(count, 1u);
  g_recorded.detached = detached != FALSE;
  g_recorded.content.assign(reinterpret_cast<const char*>(bytes[0]), sizes[0]);
  return Produce(out, out_size);
}
BOOL WINAPI SignAndEncrypt(PCRYPT_SIGN_MESSAGE_PARA sign, PCRYPT_ENCRYPT_MESSAGE_PARA encrypt, DWORD count,
                           PCCERT_CONTEXT*, const BYTE* bytes, DWORD size, BYTE* out, DWORD* out_size) {
  Record(sign);
  Record(encrypt, count);
  g_recorded.content.assign(reinterpret_cast<const char*>(bytes), size);
  return Produce(out, out_size);
}
BOOL WINAPI Decrypt(PCRYPT_DECRYPT_MESSAGE_PARA para, const BYTE*, DWORD, BYTE* out, DWORD* size,
                    PCCERT_CONTEXT*) {
  EXPECT_EQ(para->cbSize, sizeof *para);
  EXPECT_EQ(para->dwMsgAndCertEncodingType, static_cast<DWORD>(X509_ASN_ENCODING | PKCS_7_ASN_ENCODING));
  EXPECT_EQ(para->cCertStore, 1u);
  return Produce(out, size);
}

class SmimeEngine : public testing::Test {
 protected:
  void SetUp() override {
    g_recorded = {};
    crypto_.replaced["CryptEncryptMessage"] = reinterpret_cast<void*>(&Encrypt);
    crypto_.replaced["CryptSignMessage"] = reinterpret_cast<void*>(&Sign);
    crypto_.replaced["CryptSignAndEncryptMessage"] = reinterpret_cast<void*>(&SignAndEncrypt);
    crypto_.replaced["CertGetCertificateChain"] = reinterpret_cast<void*>(&GoodChain);
    crypto_.replaced["CertFreeCertificateChain"] = reinterpret_cast<void*>(&CertFreeCertificateChain);
    Add("My", ForEmail("me@x"));
    Add("AddressBook", ForEmail("you@x"));
  }
  void TearDown() override { crypto_.ExpectBalance(); }
  void Add(const char* store, const CertSpec& spec) {
    const PCCERT_CONTEXT cert = root_.Issue(spec);
    crypto_.Store(store).Add(cert);
    CertFreeCertificateContext(cert);
  }
  ScriptedHost host_;
  CountedCrypto crypto_;
  Authority root_{"Root"};
};

TEST_F(SmimeEngine, EachModeTakesItsShareOfTheText) {
  EXPECT_EQ(std::string(SmimeEncryptSign(0, "abc", "you@x me@x", nullptr, 6, 0, 0)), std::string(60, 'm'));
  EXPECT_EQ(g_recorded.content, "abc");
  EXPECT_EQ(g_recorded.recipients, 2u);
  EXPECT_EQ(PgpGetSMIMEOutputSize(), 60u) << "the true size, not the first estimate";
  SmimeEncryptSign(1, "abc", nullptr, "me@x", 6, 0, 0);
  EXPECT_EQ(g_recorded.content, "abc");
  EXPECT_TRUE(g_recorded.detached);
  EXPECT_EQ(g_recorded.attributes, 0u);
  for (const int mode : {2, 3, -1}) {
    SmimeEncryptSign(mode, "abc", "you@x", "me@x", 6, 0, 0);
    EXPECT_EQ(g_recorded.content, std::string("abc\0", 4)) << mode;
  }
  EXPECT_EQ(g_recorded.calls, 10);
  EXPECT_EQ(wfinfo::g_pgpExitCode, -1);
  EXPECT_EQ(wfinfo::g_signatureState, -1);
}

TEST_F(SmimeEngine, SelectorsReachCryptoApi) {
  SmimeEncryptSign(0, "t", "you@x", nullptr, 9, 0, 0);
  EXPECT_EQ(g_recorded.cipher, "1.2.840.113549.3.2");
  EXPECT_EQ(g_recorded.rc2_bits, 40u);
  SmimeEncryptSign(0, "t", "you@x", nullptr, 0, 0, 0);
  EXPECT_EQ(g_recorded.cipher, "1.2.840.113549.3.2");
  EXPECT_EQ(g_recorded.rc2_bits, 0u);
  SmimeEncryptSign(2, "t", "you@x", "me@x", 7, 2, 0);
  EXPECT_EQ(g_recorded.cipher, "2.16.840.1.101.3.4.1.42");
  EXPECT_EQ(g_recorded.hash, "1.3.14.3.2.3");
  SmimeEncryptSign(1, "t", nullptr, "me@x", 0, 3, 0);
  EXPECT_EQ(g_recorded.hash, "2.16.840.1.101.3.4.2.1");
}

TEST_F(SmimeEngine, WithoutAChainTheSignerIsCarriedAlone) {
  crypto_.Store("CA").Add(root_.cert());
  SmimeEncryptSign(1, "t", nullptr, "me@x", 0, 0, 0);
  const DWORD with_chain = g_recorded.carried;
  crypto_.missing_entries = {"CertGetCertificateChain"};
  EXPECT_STRNE(SmimeEncryptSign(1, "t", nullptr, "me@x", 0, 0, 0), "");
  EXPECT_EQ(g_recorded.carried, 1u);
  EXPECT_GE(with_chain, 1u);
}

TEST_F(SmimeEngine, AFailingCallIsNamed) {
  g_recorded.fails = true;
  BoxCloser closer;
  EXPECT_STREQ(SmimeEncryptSign(0, "t", "you@x", nullptr, 0, 0, 0), "");
  EXPECT_STREQ(SmimeEncryptSign(1, "t", nullptr, "me@x", 0, 0, 0), "");
  EXPECT_STREQ(SmimeEncryptSign(2, "t", "you@x", "me@x", 0, 0, 0), "");
  EXPECT_EQ(PgpGetSMIMEOutputSize(), 0u);
  const char* const names[] = {"CryptEncryptMessage", "CryptSignMessage", "CryptSignAndEncryptMessage"};
  ASSERT_EQ(closer.boxes().size(), 3u);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(closer.boxes()[i].text,
              std::string("Error occurred in S/MIME: ") + names[i] + " failed, \nerror code=0x00001234");
  }
}

TEST_F(SmimeEngine, ACertificateWithAProblemIsRefused) {
  Add("My", {.name = "Old", .emails = {"old@x"}, .from_days = -20, .to_days = -10});
  Add("AddressBook", {.name = "Older", .emails = {"older@x"}, .from_days = -30, .to_days = -20});
  BoxCloser closer;
  const std::string expired = "\x81\x7E !!!!The certificate is expired.\r\n";
  EXPECT_STREQ(SmimeEncryptSign(1, "t", nullptr, "old@x", 0, 0, 0), "");
  EXPECT_STREQ(SmimeEncryptSign(0, "t", "old@x you@x older@x", nullptr, 0, 0, 0), "");
  host_.SetLanguage(Language::kJapanese);
  EXPECT_STREQ(SmimeEncryptSign(1, "t", nullptr, "old@x", 0, 0, 0), "");
  EXPECT_STREQ(SmimeEncryptSign(2, "t", "old@x", "me@x", 0, 0, 0), "");
  ASSERT_EQ(closer.boxes().size(), 4u);
  EXPECT_EQ(closer.boxes()[0].text.find("The certificate for signing has a problem.\n\n" + expired), 0u);
  const std::string both = closer.boxes()[1].text;
  EXPECT_EQ(both.find("The certificate for encryption has a problem.\n\n\nEmail = old@x\r\n" + expired), 0u);
  EXPECT_NE(both.find("\n\n\nEmail = older@x\r\n" + expired), std::string::npos);
  EXPECT_EQ(both.find("you@x"), std::string::npos);
  EXPECT_EQ(closer.boxes()[2].text.find(Sjis(u8"電子署名する用の証明書に問題があります。\n\n×")), 0u);
  EXPECT_EQ(
      closer.boxes()[3].text.find(Sjis(u8"暗号化する用の証明書に問題があります。\n\n\nEmail = old@x\r\n×")),
      0u);
  for (const auto& box : closer.boxes()) EXPECT_EQ(box.owner, host_.frame());
  EXPECT_EQ(g_recorded.calls, 0);
}

TEST_F(SmimeEngine, ADecryptedMessageSaysThatNobodySignedIt) {
  crypto_.replaced["CryptDecryptMessage"] = reinterpret_cast<void*>(&Decrypt);
  EXPECT_EQ(std::string(SMIMEDecrypt("m", 1, nullptr)), std::string(60, 'm'));
  EXPECT_EQ(PgpGetSMIMEOutputSize(), 60u);
  EXPECT_EQ(wfinfo::g_signatureState, 0);
  EXPECT_EQ(wfinfo::g_pgpExitCode, -1);
  EXPECT_EQ(wfinfo::PgpInfoText(), std::string("\x81\x9B The encrypted email was successfully decrypted\r\n"
                                               "(It was not digitally signed.)\r\n"));
  host_.SetLanguage(Language::kJapanese);
  SMIMEDecrypt("m", 1, nullptr);
  EXPECT_EQ(wfinfo::PgpInfoText(),
            Sjis(u8"○ 暗号化されたメールの復号に成功しました。\r\n（電子署名はされてません）\r\n"));
}

TEST_F(SmimeEngine, CancellingTheChoiceIsSilent) {
  Add("My", ForEmail("me@x"));
  DialogDriver driver(1014, IDCANCEL);
  BoxCloser closer;
  EXPECT_STREQ(SmimeEncryptSign(1, "t", nullptr, "me@x", 0, 0, 0), "");
  EXPECT_STREQ(SmimeEncryptSign(0, "t", "you@x me@x", nullptr, 0, 0, 0), "");
  EXPECT_EQ(driver.count(), 2);
  EXPECT_EQ(closer.boxes().size(), 0u);
  EXPECT_EQ(g_recorded.calls, 0);
}

TEST_F(SmimeEngine, ARememberedChoiceSparesTheDialog) {
  Add("My", ForEmail("me@x"));
  host_.Expect(216).Any().Any().Always().Answer(77);
  EXPECT_STRNE(SmimeEncryptSign(1, "t", nullptr, "me@x", 0, 0, 77), "");
}

TEST_F(SmimeEngine, ASignerIsLookedForAmongThePersonalOnesOnly) {
  BoxCloser closer;
  EXPECT_STREQ(SmimeEncryptSign(1, "t", nullptr, "you@x", 0, 0, 0), "");
  ASSERT_EQ(closer.boxes().size(), 1u);
  EXPECT_EQ(closer.boxes()[0].text, "The certificate not found. email address=you@x");
}

TEST_F(SmimeEngine, OnlyTheStoreOfPersonsIsNeeded) {
  crypto_.missing_stores = {"AddressBook", "CA", "TrustedPeople"};
  EXPECT_STRNE(SmimeEncryptSign(2, "t", "me@x", "me@x", 0, 0, 0), "");
}

TEST_F(SmimeEngine, TheResultOutlivesOtherResults) {
  const char* const made = SmimeEncryptSign(1, "t", nullptr, "me@x", 0, 0, 0);
  EXPECT_STRNE(SmimeEncryptSign(1, made, nullptr, "me@x", 0, 0, 0), "") << "a result may be the next text";
  EXPECT_EQ(g_recorded.content, std::string(60, 'm'));
}

}  // namespace
}  // namespace wfinfo_test
