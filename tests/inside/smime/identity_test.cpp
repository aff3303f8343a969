// What a certificate says about its owner is never taken for more than it says: addresses that hold
// separators, zeroes, control characters, characters of other code pages.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "src/bridge/security_state_win.h"
#include "src/smime/cert_match_win.h"
#include "src/smime/message_store_win.h"
#include "tests/inside/smime/support.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::smime;

constexpr char kVictim[] = "victim@bank.example";
const std::string kZero(1, '\0');

// A decoder of alternative names that ends each one at its first zero. Wine's refuses such names.
BOOL WINAPI DecodeCut(DWORD encoding, LPCSTR structure, const BYTE* encoded, DWORD size, DWORD flags,
                      PCRYPT_DECODE_PARA para, void* object, DWORD* object_size) {
  std::vector<BYTE> bytes(encoded, encoded + size);
  if (structure == X509_ALTERNATE_NAME) std::replace(bytes.begin(), bytes.end(), BYTE{0}, BYTE{'|'});
  const BOOL done =
      CryptDecodeObjectEx(encoding, structure, bytes.data(), size, flags, para, object, object_size);
  if (!done || structure != X509_ALTERNATE_NAME) return done;
  const auto& names = **static_cast<CERT_ALT_NAME_INFO**>(object);
  for (DWORD i = 0; i < names.cAltEntry; ++i) {
    if (names.rgAltEntry[i].dwAltNameChoice == CERT_ALT_NAME_RFC822_NAME)
      std::replace(names.rgAltEntry[i].pwszRfc822Name,
                   names.rgAltEntry[i].pwszRfc822Name + std::wcslen(names.rgAltEntry[i].pwszRfc822Name), L'|',
                   L'\0');
  }
  return TRUE;
}

// One good signature by this certificate.
PCCERT_CONTEXT g_goodSigner = nullptr;
BOOL WINAPI GoodSignature(PCRYPT_VERIFY_MESSAGE_PARA, DWORD index, const BYTE*, DWORD, BYTE* content,
                          DWORD* size, PCCERT_CONTEXT* signer) {
  if (index > 0) return SetLastError(0x8009200E), FALSE;
  if (size != nullptr) *size = 1;
  if (content != nullptr) *content = 'c';
  if (signer != nullptr) *signer = CertDuplicateCertificateContext(g_goodSigner);
  return TRUE;
}

class SmimeIdentity : public testing::Test {
 protected:
  void SetUp() override {
    crypto_.replaced["CryptVerifyMessageSignature"] = reinterpret_cast<void*>(&GoodSignature);
    crypto_.replaced["CryptDecodeObjectEx"] = reinterpret_cast<void*>(&DecodeCut);
    ASSERT_TRUE(LoadCryptoLibrary());
  }
  // The report on a message that the owner of `cert` signed.
  std::string Report(PCCERT_CONTEXT cert, const char* sender = kVictim) {
    g_goodSigner = cert;
    SMIMEVerify("message", 7, nullptr, 0, sender, nullptr);
    return wfinfo::PgpInfoText();
  }
  void ExpectNobodysAddress(const CertSpec& spec, const char* why) {
    SCOPED_TRACE(why);
    const UniqueCert cert(authority_.Issue(spec));
    ASSERT_NE(cert.get(), nullptr);
    EXPECT_FALSE(CertMatchesEmailBySubject(cert.get(), kVictim));
    EXPECT_FALSE(CertMatchesEmailByAltName(cert.get(), kVictim));
    EXPECT_TRUE(CertHasEmail(cert.get())) << "it has an address, whatever it is";
    char list[512];
    EXPECT_FALSE(GetCertEmailList(cert.get(), list, sizeof list, kVictim)) << list;
    char email[kEmailRoom];
    EXPECT_STRNE(EmailNameOf(cert.get(), email), kVictim);
    const std::string report = Report(cert.get());
    EXPECT_NE(report.find("\x81\x7E !!!! The certificate email address does not matches the email sender."),
              std::string::npos)
        << report;
    for (const char* const end : {"\r\n", ",", " "}) {
      for (const char* const start : {"alias: ", "Signer email address: ", ", "})
        EXPECT_EQ(report.find(std::string(start) + kVictim + end), std::string::npos) << report;
    }
  }

  ScriptedHost host_;
  CountedCrypto crypto_;
  Authority authority_{"Authority"};
};

TEST_F(SmimeIdentity, NoAddressPassesForAnother) {
  const std::string victim = kVictim;
  const std::string comma = "\"a, " + victim + " \"@evil.example";
  // Characters whose UTF-16 bytes spell the address.
  std::wstring spelled;
  const std::string even = victim + " ";
  for (std::size_t i = 0; i + 1 < even.size(); i += 2) {
    spelled += static_cast<wchar_t>(static_cast<unsigned char>(even[i]) |
                                    static_cast<unsigned char>(even[i + 1]) << 8);
  }
  const struct {
    CertSpec spec;
    const char* why;
  } cases[] = {
      {{.name = "A", .emails = {comma}}, "behind a comma"},
      {{.name = "A", .alt_emails = {comma}}, "behind a comma, alternative name"},
      {{.name = "A", .emails = {"x@y", victim + " @evil.example"}}, "in front of a blank"},
      {{.name = "A", .emails = {"x@y", victim + ",@evil.example"}}, "in front of a comma"},
      {{.name = "A", .emails = {victim + kZero + ".evil.example"}}, "in front of a zero"},
      {{.name = "A", .emails = {victim + kZero}}, "in front of nothing but a zero"},
      {{.name = "A", .encoded_alt_names = EncodedMailNames({victim + kZero + ".evil.example"})},
       "in front of a zero, alternative name"},
      {{.name = "A", .encoded_alt_names = EncodedMailNames({"x@y", victim + kZero})},
       "in front of a zero, further alternative name"},
      {{.name = "A", .emails = {"victim\x01@bank.example"}}, "but for a control character"},
      {{.name = "A", .alt_emails = {"victim\r\n@bank.example"}}, "but for a line break, alternative name"},
      {{.name = "A", .emails = {"x@y"}, .utf8_emails = {spelled}},
       "spelled by the bytes of other characters"},
      {{.name = "A", .utf8_emails = {L"v\u00EDctim@bank.example"}}, "but for an accent"},
      {{.name = "A", .utf8_emails = {L"\uFF56ictim@bank.example"}}, "but for the width of a letter"},
  };
  for (const auto& test : cases) ExpectNobodysAddress(test.spec, test.why);
}

TEST_F(SmimeIdentity, AnAddressThatIsTheVictimsMatches) {
  const struct {
    CertSpec spec;
    const char* finding;
  } cases[] = {
      {{.name = "A", .emails = {kVictim}}, "Ther certificate email address matches the email sender."},
      {{.name = "A", .alt_emails = {"VICTIM@bank.example"}},
       "Ther certificate email address matches the email sender."},
      {{.name = "A", .encoded_alt_names = EncodedMailNames({kVictim})},
       "Ther certificate email address matches the email sender."},
      {{.name = "A", .utf8_emails = {L"victim@bank.example"}},
       "Ther certificate email address matches the email sender."},
      {{.name = "A", .emails = {kVictim}, .alt_emails = {"other@x"}},
       "The email sender matches the certificate email address alias."},
  };
  for (const auto& test : cases) {
    const UniqueCert cert(authority_.Issue(test.spec));
    const std::string report = Report(cert.get());
    EXPECT_NE(report.find(std::string("\x81\x9B ") + test.finding), std::string::npos) << report;
  }
}

// The decoder gives a letter that the code page has only as a best fit.
BOOL WINAPI DecodeAccent(DWORD encoding, LPCSTR structure, const BYTE* encoded, DWORD size, DWORD flags,
                         PCRYPT_DECODE_PARA para, void* object, DWORD* object_size) {
  if (structure != X509_ALTERNATE_NAME)
    return CryptDecodeObjectEx(encoding, structure, encoded, size, flags, para, object, object_size);
  static wchar_t name[] = L"v\u00EDctim@bank.example";
  static CERT_ALT_NAME_ENTRY entry;
  entry.dwAltNameChoice = CERT_ALT_NAME_RFC822_NAME;
  entry.pwszRfc822Name = name;
  auto* const info = static_cast<CERT_ALT_NAME_INFO*>(LocalAlloc(LPTR, sizeof(CERT_ALT_NAME_INFO)));
  *info = {1, &entry};
  *static_cast<void**>(object) = info;
  return TRUE;
}

TEST_F(SmimeIdentity, ABestFitLetterIsNotTheLetter) {
  crypto_.replaced["CryptDecodeObjectEx"] = reinterpret_cast<void*>(&DecodeAccent);
  ASSERT_TRUE(LoadCryptoLibrary());
  ExpectNobodysAddress({.name = "A", .alt_emails = {kVictim}}, "an accent that the code page does not have");
}

TEST_F(SmimeIdentity, TheReportShowsTheWholeAddress) {
  const struct {
    CertSpec spec;
    const char* shown;
  } cases[] = {
      {{.name = "A", .emails = {kVictim + kZero + ".evil.example"}}, "victim@bank.example?.evil.example"},
      {{.name = "A", .encoded_alt_names = EncodedMailNames({kVictim + kZero + ".evil.example"})},
       "victim@bank.example?.evil.example"},
      {{.name = "A", .emails = {"a b@x"}}, "a?b@x"},
      {{.name = "A"}, ""},
  };
  for (const auto& test : cases) {
    const UniqueCert cert(authority_.Issue(test.spec));
    char email[kEmailRoom];
    EXPECT_STREQ(EmailNameOf(cert.get(), email), test.shown);
    EXPECT_NE(Report(cert.get()).find(std::string("Signer email address: ") + test.shown + "\r\n"),
              std::string::npos);
  }
}

TEST_F(SmimeIdentity, ANameWithAZeroIsNotShownAsItsBeginning) {
  const UniqueCert cert(authority_.Issue({.name = "Bank" + kZero + " of Evil", .emails = {"a@x"}}));
  char name[128];
  const std::string shown = NameOf(cert.get(), CERT_NAME_FRIENDLY_DISPLAY_TYPE, 0, name);
  EXPECT_EQ(shown.back(), '?') << shown;
  EXPECT_STREQ(NameOf(cert.get(), CERT_NAME_FRIENDLY_DISPLAY_TYPE, CERT_NAME_ISSUER_FLAG, name), "Authority");
}

PCCERT_CONTEXT g_shown = nullptr;
BOOL WINAPI ShowContext(DWORD, const void* context, HWND, LPCWSTR, DWORD, void*) {
  g_shown = CertDuplicateCertificateContext(static_cast<PCCERT_CONTEXT>(context));
  return TRUE;
}

TEST_F(SmimeIdentity, TheCertificateOfAMessageIsItsSigners) {
  const UniqueCert victim(authority_.Issue(ForEmail(kVictim)));
  const UniqueCert signer(authority_.Issue({.name = "Evil"}));
  MemoryStore carried;
  carried.Add(victim.get());
  carried.Add(signer.get());
  crypto_.replaced["CryptUIDlgViewContext"] = reinterpret_cast<void*>(&ShowContext);
  const auto shown = [&] {
    EXPECT_EQ(SMIMEShowCertificate(carried.get(), nullptr), 1);
    const UniqueCert cert(g_shown);
    return cert.get()->cbCertEncoded == signer.get()->cbCertEncoded &&
           std::memcmp(cert.get()->pbCertEncoded, signer.get()->pbCertEncoded, cert.get()->cbCertEncoded) ==
               0;
  };
  Report(signer.get());
  EXPECT_TRUE(shown()) << "not the first one with an address";
  crypto_.missing_entries = {"CryptVerifyMessageSignature"};
  Report(signer.get());
  EXPECT_FALSE(shown()) << "nobody has signed the last message: the first with an address";
}

}  // namespace
}  // namespace wfinfo_test
