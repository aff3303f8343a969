// The report on a certificate, the system's verdict, and verification errors.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>

#include "src/bridge/security_state_win.h"
#include "src/smime/cert_report_win.h"
#include "src/smime/chain_texts_win.h"
#include "src/smime/report_writer.h"
#include "src/smime/smime_engine_win.h"
#include "tests/inside/smime/support.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::smime;

// What the replaced entries give.
DWORD g_status = 0;
LONG g_verdict = 0;
WINTRUST_DATA g_asked;
WINTRUST_CERT_INFO g_askedCert;
std::wstring g_askedName;

BOOL WINAPI ChainWithStatus(HCERTCHAINENGINE engine, PCCERT_CONTEXT cert, LPFILETIME time, HCERTSTORE store,
                            PCERT_CHAIN_PARA para, DWORD flags, LPVOID reserved,
                            PCCERT_CHAIN_CONTEXT* chain) {
  EXPECT_EQ(para->cbSize, sizeof(CERT_CHAIN_PARA));
  const BOOL done = CertGetCertificateChain(engine, cert, time, store, para, flags, reserved, chain);
  if (done) const_cast<CERT_CHAIN_CONTEXT*>(*chain)->TrustStatus.dwErrorStatus = g_status;
  return done;
}

LONG WINAPI Trust(HWND, GUID* action, LPVOID data) {
  // The policy that judges a certificate by its chain.
  constexpr GUID kCertificate = {
      0x189A3842, 0x3041, 0x11D1, {0x85, 0xE1, 0x00, 0xC0, 0x4F, 0xC2, 0x95, 0xEE}};
  EXPECT_TRUE(IsEqualGUID(*action, kCertificate));
  g_asked = *static_cast<WINTRUST_DATA*>(data);
  g_askedCert = *g_asked.pCert;
  g_askedName = g_askedCert.pcwszDisplayName;
  return g_verdict;
}

class SmimeReportOf : public testing::Test {
 protected:
  void SetUp() override {
    g_status = 0;
    g_verdict = 0;
    crypto_.replaced["CertGetCertificateChain"] = reinterpret_cast<void*>(&ChainWithStatus);
    crypto_.replaced["CertFreeCertificateChain"] = reinterpret_cast<void*>(&CertFreeCertificateChain);
    crypto_.replaced["WinVerifyTrust"] = reinterpret_cast<void*>(&Trust);
    further_.Add(root_.cert());
    further_.Add(middle_.cert());
  }
  std::string Report(const CertSpec& spec) {
    const PCCERT_CONTEXT cert = middle_.Issue(spec);
    const std::string report = SMIMEVerifyCertificate(cert, further_.get());
    CertFreeCertificateContext(cert);
    return report;
  }
  std::string ReportWith(DWORD status, const CertSpec& spec = ForEmail("End")) {
    g_status = status;
    return Report(spec);
  }

  ScriptedHost host_;
  CountedCrypto crypto_;
  Authority root_{"Root"};
  Authority middle_{"Middle", &root_};
  MemoryStore further_;
};

constexpr char kValid[] = "\x81\x9B The certificate is in validity period.\r\n";
constexpr char kPath[] = "Certificate path:\r\n  Root\r\n    Middle\r\n      End\r\n";

TEST_F(SmimeReportOf, AGoodCertificateListsItsPathFromTheRoot) {
  EXPECT_EQ(Report(ForEmail("End")),
            std::string(kValid) + "\x81\x9B The certificate path is correct.\r\n" + kPath);
}

TEST_F(SmimeReportOf, EachStatusHasItsText) {
  const struct {
    DWORD status;
    const char* text;
  } cases[] = {
      {1, "Expired certificate exist in the certificate chain."},
      {2, "Certificates in the chain are not properly time nested."},
      {4, "This certificate or issuer's certificate is revoked."},
      {8,
       "The certificate or one of the certificates in the certificate chain does not have a valid "
       "signature."},
      {16, "The certificate or certificate chain is not valid for its proposed usage."},
      {32, "The certificate or certificate chain is based on an untrusted root."},
      {64, "Ther certificate revocation status is unknown."},
      {0x10000, "The certificate chain is not complete."},
      {0x20000, "A CTL used to create this chain was not time valid."},
      {0x40000, "A CTL used to create this chain did not have a valid signature."},
      {0x80092010, "The certificate is revoked."},
      {0x80092011, "No installed or registered DLL was found that was able to verify revocation."},
      {0x80092012,
       "An installed or registered revocation function wasn't able to do a revocation check on the context."},
      {0x80092013, "Could not connect to the issuer server."},
      {0x80092014, "The context to be checked was not found in the revocation server's database."},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(ReportWith(test.status), std::string(kValid) + "\x81\x7E " + test.text + "\r\n" + kPath)
        << test.status;
  }
  EXPECT_EQ(ReportWith(33), std::string(kValid) +
                                "\x81\x7E Ther certificate chain has a problem. error code = 0x00000021\r\n" +
                                kPath)
      << "several bits have no text";
}

TEST_F(SmimeReportOf, JapaneseTextsStandWhereThereAreSome) {
  host_.SetLanguage(Language::kJapanese);
  const DWORD translated[] = {1, 4, 64, 0x10000, 0x80092010, 0x80092013};
  const DWORD english[] = {2, 8, 16, 32, 0x20000, 0x40000, 0x80092011, 0x80092012, 0x80092014};
  for (const DWORD code : translated) EXPECT_LT(static_cast<signed char>(ChainErrorText(code)[0]), 0) << code;
  for (const DWORD code : english) EXPECT_GT(ChainErrorText(code)[0], 0) << code;
  EXPECT_EQ(ChainErrorText(3), nullptr);
  EXPECT_EQ(ChainErrorText(0), nullptr);
}

TEST_F(SmimeReportOf, ExpiryIsSaidOnce) {
  const CertSpec expired = {.name = "End", .from_days = -20, .to_days = -10};
  const CertSpec early = {.name = "End", .from_days = 10, .to_days = 20};
  const std::string expired_line = "\x81\x7E !!!!The certificate is expired.\r\n";
  EXPECT_EQ(ReportWith(1, expired), expired_line + "\r\n" + kPath);
  EXPECT_EQ(
      ReportWith(1, early),
      std::string("\x81\x7E !!!!The validity period of the certificate is in the future.\r\n\r\n") + kPath);
  EXPECT_EQ(ReportWith(32, expired),
            expired_line +
                "\x81\x7E The certificate or certificate chain is based on an untrusted root.\r\n" + kPath);
}

TEST_F(SmimeReportOf, TheSystemsVerdictIsAsked) {
  const std::string correct = std::string(kValid) + "\x81\x9B The certificate path is correct.";
  EXPECT_EQ(Report(ForEmail("End")), correct + "\r\n" + kPath);
  EXPECT_EQ(g_asked.cbStruct, sizeof(WINTRUST_DATA));
  EXPECT_EQ(g_asked.dwUnionChoice, static_cast<DWORD>(WTD_CHOICE_CERT));
  EXPECT_EQ(g_asked.dwUIChoice, static_cast<DWORD>(WTD_UI_NONE));
  EXPECT_EQ(g_askedName, L"Certificate");
  EXPECT_EQ(g_asked.dwProvFlags, static_cast<DWORD>(WTD_REVOCATION_CHECK_NONE | WTD_CACHE_ONLY_URL_RETRIEVAL |
                                                    WTD_NO_POLICY_USAGE_FLAG))
      << "no revocation check, no network, no usage";
  EXPECT_EQ(g_asked.dwStateAction, static_cast<DWORD>(WTD_STATEACTION_IGNORE)) << "nothing is left to close";
  g_verdict = static_cast<LONG>(0x800B010A);
  EXPECT_EQ(Report(ForEmail("End")), correct + "\r\n" + kPath) << "an untrusted root is the chain's matter";
  g_verdict = -1;
  EXPECT_EQ(
      Report(ForEmail("End")),
      correct + "\x81\xA2 !!!! Failed to use WINTRUST.DLL, You cannot verify certificate chain.\r\n" + kPath);
  g_verdict = static_cast<LONG>(0x800B0101);
  const std::string refused = Report(ForEmail("End"));
  EXPECT_EQ(refused.find(correct +
                         "\r\n\x81\x7E !!!!Failed to verify the certificate (WinVerifyTrust), error code = "
                         "0x800B0101\r\n"),
            0u)
      << refused;
  EXPECT_TRUE(HasProblem(refused.c_str()));
}

TEST_F(SmimeReportOf, WithoutWintrustThatIsSaid) {
  const std::string unsettled =
      std::string(kValid) +
      "\x81\x9B The certificate path is correct."
      "\x81\xA2 !!!! Failed to use WINTRUST.DLL, You cannot verify certificate chain.\r\n" +
      kPath;
  crypto_.missing_entries = {"WinVerifyTrust"};
  EXPECT_EQ(Report(ForEmail("End")), unsettled);
  g_crypto = {};
  crypto_.missing_entries.clear();
  crypto_.missing_modules = {"wintrust.dll"};
  EXPECT_EQ(Report(ForEmail("End")), unsettled);
  EXPECT_EQ(SMIMEVerifyCertificateByWinVerifyTrust_Cert(0, root_.cert()), 0xFFFFFFFFu);
  EXPECT_FALSE(HasProblem(unsettled.c_str())) << "such a certificate is still good for signing";
}

TEST_F(SmimeReportOf, WithoutTheChainEntriesThePathIsLeftOpen) {
  for (const char* const entry : {"CertGetCertificateChain", "CertFreeCertificateChain"}) {
    crypto_.missing_entries = {entry};
    EXPECT_EQ(Report(ForEmail("End")),
              std::string(kValid) + "\x81\xA2 The certification path cannot be verified.")
        << entry;
  }
}

TEST_F(SmimeReportOf, AChainThatCannotBeBuiltIsAProblem) {
  crypto_.replaced["CertGetCertificateChain"] =
      reinterpret_cast<void*>(+[](HCERTCHAINENGINE, PCCERT_CONTEXT, LPFILETIME, HCERTSTORE, PCERT_CHAIN_PARA,
                                  DWORD, LPVOID, PCCERT_CHAIN_CONTEXT*) -> BOOL { return FALSE; });
  EXPECT_EQ(Report(ForEmail("End")), std::string(kValid) + "\x81\x7E !!!!Cannot create certificate chain.");
}

TEST_F(SmimeReportOf, ANameCannotAddALine) {
  const std::string report = ReportWith(0, {.name = "End\r\nfake"});
  EXPECT_NE(report.find("      Endfake\r\n"), std::string::npos) << report;
}

TEST_F(SmimeReportOf, JunkGivesNoReport) {
  EXPECT_STREQ(SMIMEVerifyCertificate(nullptr, nullptr), "");
  EXPECT_STREQ(SMIMEVerifyCertificate(reinterpret_cast<void*>(8), nullptr), "");
  EXPECT_EQ(SMIMEVerifyCertificateByWinVerifyTrust_Cert(0, nullptr), 0xFFFFFFFFu);
  EXPECT_EQ(SMIMEVerifyCertificateByWinVerifyTrust(0, nullptr), 0xFFFFFFFFu);
}

TEST_F(SmimeReportOf, TheVerdictCanBeAskedForWithAndWithoutWindows) {
  g_verdict = 5;
  EXPECT_EQ(SMIMEVerifyCertificateByWinVerifyTrust_Cert(1, root_.cert()), 5u);
  EXPECT_EQ(g_asked.dwUIChoice, static_cast<DWORD>(WTD_UI_ALL));
  EXPECT_EQ(g_askedCert.psCertContext, root_.cert());
  EXPECT_EQ(SMIMEVerifyCertificateByWinVerifyTrust(0, further_.get()), 5u);
  MemoryStore empty;
  EXPECT_EQ(SMIMEVerifyCertificateByWinVerifyTrust(0, empty.get()), 0xFFFFFFFFu);
  crypto_.missing_entries = {"WinVerifyTrust"};
  EXPECT_EQ(SMIMEVerifyCertificateByWinVerifyTrust_Cert(0, root_.cert()), 0xFFFFFFFFu);
}

// Verification with the walk over signers replaced: each entry of the script is one answer.
std::vector<DWORD> g_script;  // 0: verified; 1: fails without a last error
std::size_t g_calls = 0;
std::vector<std::string> g_callNames;
DWORD g_contentSize = 5;
PCCERT_CONTEXT g_signer = nullptr;
int g_given = 0;           // contexts handed out
DWORD g_lastDetached = 1;  // bytes of the content in the last detached verification
std::string g_lastMessage;

BOOL Answer(const char* name, BYTE* content, DWORD* size, PCCERT_CONTEXT* signer) {
  g_callNames.emplace_back(std::string(name) + (content != nullptr  ? " content"
                                                : size != nullptr   ? " size"
                                                : signer == nullptr ? " without asking who"
                                                                    : ""));
  const DWORD error = g_calls < g_script.size() ? g_script[g_calls] : 0x8009200E;
  ++g_calls;
  // A success may leave any last error behind: the least kind one is "no more signers".
  if (error != 1) SetLastError(error == 0 ? 0x8009200E : error);
  if (error != 0) return FALSE;
  if (size != nullptr) *size = g_contentSize;
  if (content != nullptr) std::fill_n(content, g_contentSize, static_cast<BYTE>('c'));
  if (signer == nullptr) return TRUE;
  *signer = g_signer == nullptr ? nullptr : CertDuplicateCertificateContext(g_signer);
  if (*signer != nullptr) ++g_given;
  return TRUE;
}
BOOL WINAPI ScriptedVerify(PCRYPT_VERIFY_MESSAGE_PARA, DWORD, const BYTE*, DWORD, BYTE* content, DWORD* size,
                           PCCERT_CONTEXT* signer) {
  return Answer("verify", content, size, signer);
}
BOOL WINAPI ScriptedDetached(PCRYPT_VERIFY_MESSAGE_PARA, DWORD, const BYTE* message, DWORD size, DWORD parts,
                             const BYTE** content, DWORD* sizes, PCCERT_CONTEXT* signer) {
  EXPECT_EQ(parts, 1u);
  EXPECT_NE(content[0], nullptr);
  g_lastDetached = sizes[0];
  g_lastMessage.assign(reinterpret_cast<const char*>(message), size);
  return Answer("detached", nullptr, nullptr, signer);
}
BOOL WINAPI ScriptedOpen(PCRYPT_DECRYPT_MESSAGE_PARA, PCRYPT_VERIFY_MESSAGE_PARA, DWORD, const BYTE*, DWORD,
                         BYTE* content, DWORD* size, PCCERT_CONTEXT*, PCCERT_CONTEXT* signer) {
  return Answer("open", content, size, signer);
}

BOOL WINAPI ScriptedDecrypt(PCRYPT_DECRYPT_MESSAGE_PARA, const BYTE*, DWORD, BYTE* out, DWORD* size,
                            PCCERT_CONTEXT*) {
  *size = 5;
  if (out != nullptr) std::copy_n("inner", 5, out);
  return TRUE;
}

class SmimeWalk : public testing::Test {
 protected:
  void SetUp() override {
    g_calls = 0;
    g_given = 0;
    g_contentSize = 5;
    g_callNames.clear();
    g_signer = nullptr;
    crypto_.replaced["CryptDecryptMessage"] = reinterpret_cast<void*>(&ScriptedDecrypt);
    crypto_.replaced["CryptVerifyMessageSignature"] = reinterpret_cast<void*>(&ScriptedVerify);
    crypto_.replaced["CryptVerifyDetachedMessageSignature"] = reinterpret_cast<void*>(&ScriptedDetached);
    crypto_.replaced["CryptDecryptAndVerifyMessageSignature"] = reinterpret_cast<void*>(&ScriptedOpen);
  }
  const char* Verify(std::vector<DWORD> script, bool detached = false, bool enveloped = false) {
    g_script = std::move(script);
    CRYPT_DECRYPT_MESSAGE_PARA decryption{};
    decryption.cbSize = sizeof decryption;
    return SMIMEVerify("message", 7, detached ? "content" : nullptr, 7, nullptr,
                       enveloped ? &decryption : nullptr);
  }
  ScriptedHost host_;
  CountedCrypto crypto_;
};

using Names = std::vector<std::string>;

TEST_F(SmimeWalk, TheContentIsFetchedInTheFirstRoundOnly) {
  EXPECT_STREQ(Verify({0, 0, 0}), "ccccc");
  EXPECT_EQ(PgpGetSMIMEOutputSize(), 5u);
  EXPECT_EQ(g_callNames, (Names{"verify size", "verify content", "verify", "verify"}));
  EXPECT_STREQ(wfinfo::PgpInfoText(),
               "\x81\xA2 The digital signature is verified correctly but the signer is unknown.\r\n");
}

TEST_F(SmimeWalk, AnEnvelopeIsOpenedInEveryRound) {
  EXPECT_STREQ(Verify({0, 0, 0}, false, true), "ccccc");
  EXPECT_EQ(g_callNames, (Names{"open size", "open content", "open", "open"}));
}

TEST_F(SmimeWalk, AMessageThatIsNotEnvelopedIsVerifiedFromThenOn) {
  EXPECT_STREQ(Verify({0x8009200A, 0, 0, 0}, false, true), "ccccc");
  EXPECT_EQ(g_callNames, (Names{"open size", "verify size", "verify content", "verify", "verify"}));
}

TEST_F(SmimeWalk, DetachedContentIsNeverFetched) {
  EXPECT_STREQ(Verify({0, 0}, true), "OK");
  EXPECT_EQ(PgpGetSMIMEOutputSize(), 0u);
  EXPECT_EQ(g_callNames, (Names{"detached", "detached", "detached"}));
}

TEST_F(SmimeWalk, AnyOtherErrorFailsTheWholeMessage) {
  const struct {
    DWORD error;
    const char* text;
  } cases[] = {
      {0x80090006, "\x81\x7E !!!! The digital signature is invalid or email is alterd. (BAD SIGNATURE)"},
      {0x80090008, "\x81\xA2 Unknown encryption algorithm is used."},
      {0x80091007, "\x81\x7E !!!! Invalid hash value."},
      {0xC000A000, "\x81\x7E !!!! The digital signature invalid or email is altered. (INVALID SIGNATURE)"},
      {0x12345678, "\x81\xA2 Failed to verify. Please search the error code by web site (e.g. google)"},
  };
  for (const auto& test : cases) {
    for (const std::vector<DWORD>& script :
         {std::vector<DWORD>{test.error}, {0, test.error}, {0, 0, 0, test.error}}) {
      g_calls = 0;
      EXPECT_STREQ(Verify(script), "OK");
      EXPECT_EQ(PgpGetSMIMEOutputSize(), 0u);
      EXPECT_EQ(wfinfo::g_signatureState, 0);
      EXPECT_EQ(wfinfo::g_pgpExitCode, -1);
      char expected[256];
      wsprintfA(expected, "%s\r\nerror code = 0x%08X", test.text, static_cast<unsigned>(test.error));
      EXPECT_STREQ(wfinfo::PgpInfoText(), expected);
    }
  }
}

TEST_F(SmimeWalk, WithoutContentASignatureIsVerifiedOverNothing) {
  Authority root("Root");
  const UniqueCert signer(root.Issue(ForEmail("a@x")));
  g_signer = signer.get();
  g_contentSize = 0;
  EXPECT_STREQ(Verify({0, 0x80091007}), "OK") << "the size is 0: nothing has been verified yet";
  EXPECT_EQ(g_callNames, (Names{"verify size", "detached"}));
  EXPECT_EQ(g_lastDetached, 0u);
  EXPECT_EQ(g_lastMessage, "message");
  EXPECT_EQ(wfinfo::g_signatureState, 0);
  EXPECT_STREQ(wfinfo::PgpInfoText(), "\x81\x7E !!!! Invalid hash value.\r\nerror code = 0x80091007");
  g_calls = 0;
  EXPECT_STREQ(Verify({0, 0}), "OK") << "a signature over nothing";
  EXPECT_EQ(wfinfo::g_signatureState, 1);
  EXPECT_EQ(PgpGetSMIMEOutputSize(), 0u);
}

TEST_F(SmimeWalk, InAnEnvelopeTheInnerMessageIsVerifiedOverNothing) {
  g_contentSize = 0;
  EXPECT_STREQ(Verify({0, 0x80090006}, false, true), "OK");
  EXPECT_EQ(g_callNames, (Names{"open size", "detached"}));
  EXPECT_EQ(g_lastDetached, 0u);
  EXPECT_EQ(g_lastMessage, "inner");
  EXPECT_EQ(wfinfo::g_signatureState, 0);
}

TEST_F(SmimeWalk, AThousandSignersAreVerifiedAndNoMore) {
  Authority root("Root");
  const UniqueCert signer(root.Issue(ForEmail("a@x")));
  g_signer = signer.get();
  for (const bool detached : {false, true}) {
    // The size, unless detached, and then one call for each signer.
    g_calls = 0;
    Verify(std::vector<DWORD>(detached ? 1000 : 1001, 0), detached);
    EXPECT_EQ(wfinfo::g_signatureState, 1);
    g_calls = 0;
    EXPECT_STREQ(Verify(std::vector<DWORD>(100000, 0), detached), "OK");
    EXPECT_EQ(wfinfo::g_signatureState, 0);
    EXPECT_EQ(PgpGetSMIMEOutputSize(), 0u);
    EXPECT_LE(g_calls, 1002u);
    EXPECT_EQ(HoldsMark(wfinfo::PgpInfoText(), kGoodMark), false) << wfinfo::PgpInfoText();
  }
}

TEST_F(SmimeWalk, AnEarlierLastErrorIsNoAnswer) {
  Authority root("Root");
  const UniqueCert signer(root.Issue(ForEmail("a@x")));
  g_signer = signer.get();
  for (const bool detached : {false, true}) {
    g_calls = 0;
    EXPECT_STREQ(Verify(detached ? std::vector<DWORD>{0, 1} : std::vector<DWORD>{0, 0, 1}, detached), "OK");
    EXPECT_EQ(wfinfo::g_signatureState, 0);
  }
}

TEST_F(SmimeWalk, ALaterSignerWithoutACertificateIsNotHiddenBehindTheFirst) {
  Authority root("Root");
  const UniqueCert signer(root.Issue(ForEmail("a@x")));
  g_signer = signer.get();
  static int rounds;
  rounds = 0;
  crypto_.replaced["CryptVerifyDetachedMessageSignature"] =
      reinterpret_cast<void*>(+[](PCRYPT_VERIFY_MESSAGE_PARA, DWORD, const BYTE*, DWORD, DWORD, const BYTE**,
                                  DWORD*, PCCERT_CONTEXT* who) -> BOOL {
        *who = rounds == 0 ? CertDuplicateCertificateContext(g_signer) : nullptr;
        SetLastError(0x8009200E);
        return ++rounds <= 2;
      });
  Verify({}, true);
  EXPECT_EQ(wfinfo::g_signatureState, 0);
  EXPECT_STREQ(wfinfo::PgpInfoText(),
               "\x81\xA2 The digital signature is verified correctly but the signer is unknown.\r\n");
}

TEST_F(SmimeWalk, TheSignersCertificateIsGivenBackHoweverItEnds) {
  Authority root("Root");
  const PCCERT_CONTEXT cert = root.Issue(ForEmail("a@x"));
  g_signer = cert;
  ASSERT_TRUE(LoadCryptoLibrary());
  for (const std::vector<DWORD>& script : {std::vector<DWORD>{0, 0}, {0, 0, 0, 0x80090006}}) {
    const int before = crypto_.open_certs();
    g_calls = 0;
    g_given = 0;
    Verify(script);
    // The scripted calls hand out contexts that are not counted on their way out.
    EXPECT_GE(g_given, 1);
    EXPECT_EQ(crypto_.open_certs(), before - g_given);
  }
  EXPECT_EQ(crypto_.open_stores(), 0);
  CertFreeCertificateContext(cert);
}

TEST_F(SmimeWalk, UnreadableParametersGiveNothing) {
  EXPECT_STREQ(SMIMEVerify(nullptr, 5, nullptr, 0, nullptr, nullptr), "");
  EXPECT_STREQ(SMIMEVerify(kNumberForText, 5, nullptr, 0, nullptr, nullptr), "");
  EXPECT_STREQ(SMIMEVerify("m", 1, kNumberForText, 5, nullptr, nullptr), "");
  EXPECT_STREQ(SMIMEVerify("m", 1, nullptr, 0, nullptr, reinterpret_cast<void*>(3)), "");
  EXPECT_STREQ(SMIMEDecrypt(nullptr, 5, nullptr), "");
  EXPECT_STREQ(SMIMEDecrypt(kNumberForText, 5, nullptr), "");
  host_.ExpectMessages({});
  EXPECT_STREQ(SMIMEVerify("m", 1, nullptr, 0, kNumberForText, nullptr), "");
  EXPECT_STREQ(SMIMEDecrypt("m", 1, kNumberForText), "");
  host_.ExpectMessages({kStringMessageEnglish, kStringMessageEnglish});
}

TEST_F(SmimeWalk, ARefusedMessageDoesNotKeepTheStateOfTheOneBefore) {
  Authority root("Root");
  const UniqueCert signer(root.Issue(ForEmail("a@x")));
  g_signer = signer.get();
  const std::function<void()> refused[] = {
      [] { SMIMEVerify(nullptr, 5, nullptr, 0, nullptr, nullptr); },
      [] { SMIMEVerify("m", 1, nullptr, 0, kNumberForText, nullptr); },
      [] { SMIMEVerify("m", 1, kNumberForText, 5, nullptr, nullptr); },
      [] { SMIMEDecrypt(nullptr, 5, nullptr); },
      [] { SMIMEDecrypt("m", 1, kNumberForText); },
  };
  for (const auto& refuse : refused) {
    g_calls = 0;
    Verify({0, 0});
    ASSERT_EQ(wfinfo::g_signatureState, 1);
    refuse();
    EXPECT_EQ(wfinfo::g_signatureState, -1);
    EXPECT_EQ(PgpGetSMIMEOutputSize(), 0u);
    EXPECT_STREQ(wfinfo::PgpInfoText(), "");
  }
  host_.TakeMessages();
}

TEST_F(SmimeWalk, TheSenderMayLieInTheReportBefore) {
  Authority root("Root");
  const UniqueCert signer(root.Issue({.name = "A", .emails = {"first@x"}, .alt_emails = {"last@x"}}));
  g_signer = signer.get();
  Verify({0, 0});
  const char* const sender =
      std::strstr(wfinfo::PgpInfoText(), "last@x");  // of the line of further addresses
  ASSERT_NE(sender, nullptr);
  *const_cast<char*>(sender + 6) = '\0';
  g_calls = 0;
  SMIMEVerify("message", 7, nullptr, 0, sender, nullptr);
  EXPECT_NE(std::string(wfinfo::PgpInfoText())
                .find("\x81\x9B Ther certificate email address matches the email sender.\r\n"),
            std::string::npos)
      << wfinfo::PgpInfoText();
}

TEST_F(SmimeWalk, AStoreThatDoesNotOpenIsTold) {
  crypto_.missing_stores = {"My"};
  BoxCloser closer;
  EXPECT_STREQ(SMIMEDecrypt("message", 7, nullptr), "");
  EXPECT_STREQ(SmimeEncryptSign(0, "text", "a@x", nullptr, 0, 0, 0), "");
  ASSERT_EQ(closer.boxes().size(), 2u);
  EXPECT_EQ(closer.boxes()[1].text,
            "Error occurred in S/MIME: CertOpenStore failed, \nerror code=0x00000005");
  EXPECT_EQ(wfinfo::g_signatureState, -1);
  crypto_.ExpectBalance();
}

}  // namespace
}  // namespace wfinfo_test
