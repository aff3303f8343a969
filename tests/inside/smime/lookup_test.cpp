// Loading, the error box, matching by address, the look-up and its dialog.
#include <gtest/gtest.h>

#include <string_view>
#include <utility>

#include "resources/resource_ids.h"
#include "src/bridge/report_win.h"
#include "src/smime/cert_lookup_win.h"
#include "src/smime/cert_match_win.h"
#include "src/smime/message_store_win.h"
#include "tests/inside/smime/support.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::smime;

// A test's surroundings: an English host, counted entries, an authority.
class SmimeLookup : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(LoadCryptoLibrary()); }

  // Adds a certificate and keeps a context for comparing.
  PCCERT_CONTEXT Add(const std::string& store, const CertSpec& spec) {
    const PCCERT_CONTEXT cert = authority_.Issue(spec);
    crypto_.Store(store).Add(cert);
    kept_.push_back(cert);
    return cert;
  }
  void TearDown() override {
    for (const PCCERT_CONTEXT cert : kept_) CertFreeCertificateContext(cert);
  }
  bool Same(PCCERT_CONTEXT a, PCCERT_CONTEXT b) {
    return a != nullptr && a != kCancelled &&
           CertCompareCertificate(X509_ASN_ENCODING, a->pCertInfo, b->pCertInfo);
  }
  // Looks `address` up in the four stores.
  PCCERT_CONTEXT Find(const char* address, DWORD remembered = 0, bool always_ask = false) {
    HCERTSTORE stores[kStoreCount];
    for (int i = 0; i < kStoreCount; ++i) stores[i] = crypto_.Store(kStoreNames[i]).get();
    return FindCertByEmail(stores, kStoreCount, address, remembered, always_ask);
  }
  // Answers request 216: the number of a serial number is its first byte.
  void AnswerNumbers() {
    host_.Expect(216).Any().Int(2).Always().Do([](const Request& request) {
      return static_cast<Slot>(*reinterpret_cast<const BYTE*>(request.block[0]));
    });
  }
  static DWORD NumberOf(PCCERT_CONTEXT cert) { return cert->pCertInfo->SerialNumber.pbData[0]; }

  ScriptedHost host_;
  CountedCrypto crypto_;
  Authority authority_{"Test authority"};
  std::vector<PCCERT_CONTEXT> kept_;
};

TEST_F(SmimeLookup, AllEntriesAreThere) {
#define EXPECT_ENTRY(name) EXPECT_NE(g_crypto.name, nullptr) << #name;
  WFINFO_CRYPT32_ENTRIES(EXPECT_ENTRY)
#undef EXPECT_ENTRY
  EXPECT_NE(g_crypto.CryptUIDlgViewContext, nullptr);
}

TEST_F(SmimeLookup, AMissingEntryIsNullAndFoundAgainLater) {
  crypto_.missing_entries = {"CertVerifyCRLRevocation"};
  EXPECT_TRUE(LoadCryptoLibrary());
  EXPECT_EQ(g_crypto.CertVerifyCRLRevocation, nullptr);
  crypto_.missing_entries.clear();
  EXPECT_TRUE(LoadCryptoLibrary());
  EXPECT_NE(g_crypto.CertVerifyCRLRevocation, nullptr);
}

TEST_F(SmimeLookup, MatchesASubjectAddressWithoutRegardToCase) {
  const CertSpec spec = {.name = "A", .emails = {"first@example.org", "Second@Example.org"}};
  const PCCERT_CONTEXT cert = Add("My", spec);
  EXPECT_TRUE(CertMatchesEmailBySubject(cert, "FIRST@example.org"));
  EXPECT_TRUE(CertMatchesEmailBySubject(cert, "second@example.org")) << "any attribute counts";
  EXPECT_FALSE(CertMatchesEmailBySubject(cert, "second@example.or"));
  EXPECT_FALSE(CertMatchesEmailBySubject(cert, "second@example.orgx"));
  EXPECT_FALSE(CertMatchesEmailByAltName(cert, "first@example.org"));
  EXPECT_TRUE(CertHasEmail(cert));
}

TEST_F(SmimeLookup, OnlyTheFirstAlternativeNameMatches) {
  const PCCERT_CONTEXT cert = Add("My", {.name = "A", .alt_emails = {"one@example.org", "two@example.org"}});
  EXPECT_TRUE(CertMatchesEmailByAltName(cert, "ONE@example.org"));
  EXPECT_FALSE(CertMatchesEmailByAltName(cert, "two@example.org"));
  EXPECT_FALSE(CertMatchesEmailBySubject(cert, "one@example.org"));
  EXPECT_TRUE(CertHasEmail(cert));
  const UniqueCert found(Find("one@example.org"));
  EXPECT_TRUE(Same(found.get(), cert));
  EXPECT_EQ(Find("two@example.org"), nullptr);
}

TEST_F(SmimeLookup, TheFirstExtensionWithAnAddressDecides) {
  const PCCERT_CONTEXT cert =
      Add("My", {.name = "A", .alt_emails = {"new@example.org"}, .old_alt_emails = {"old@example.org"}});
  EXPECT_TRUE(CertMatchesEmailByAltName(cert, "old@example.org"));
  EXPECT_FALSE(CertMatchesEmailByAltName(cert, "new@example.org"));
}

TEST_F(SmimeLookup, AVeryLongAlternativeNameDoesNotMatch) {
  const std::string fits = std::string(243, 'a') + "@example.org";  // 255 bytes
  const std::string is_long = "a" + fits;
  const PCCERT_CONTEXT good = Add("My", {.name = "A", .alt_emails = {fits}});
  const PCCERT_CONTEXT too_long = Add("My", {.name = "B", .alt_emails = {is_long}});
  EXPECT_TRUE(CertMatchesEmailByAltName(good, fits.c_str()));
  EXPECT_FALSE(CertMatchesEmailByAltName(too_long, is_long.c_str()));
  EXPECT_FALSE(CertMatchesEmailByAltName(too_long, ""));
}

TEST_F(SmimeLookup, ListsAllAddressesSubjectFirst) {
  const PCCERT_CONTEXT cert = Add(
      "My",
      {.name = "A", .emails = {"s1@x", "s2@x"}, .alt_emails = {"a1@x", "a2@x"}, .old_alt_emails = {"o1@x"}});
  char list[2048];
  GetCertEmailList(cert, list, sizeof list);
  EXPECT_STREQ(list, "s1@x, s2@x, o1@x, a1@x, a2@x");
  char small[20];
  GetCertEmailList(cert, small, sizeof small);
  EXPECT_STREQ(small, "s1@x, s2@x, ..") << "one byte is left of the 15";
  const PCCERT_CONTEXT none = Add("My", {.name = "B"});
  GetCertEmailList(none, list, sizeof list);
  EXPECT_STREQ(list, "");
  EXPECT_FALSE(CertHasEmail(none));
}

TEST_F(SmimeLookup, AnAddressCannotBreakOutOfItsLine) {
  const PCCERT_CONTEXT cert = Add("My", {.name = "A", .emails = {"a@x\r\n\x01 fine", "b@x"}});
  char list[256];
  GetCertEmailList(cert, list, sizeof list);
  EXPECT_STREQ(list, "a@x????fine, b@x") << "nothing is dropped: what is left could be another's address";
}

TEST_F(SmimeLookup, TheSameCertificateInTwoStoresIsOneCandidate) {
  const PCCERT_CONTEXT cert = Add("AddressBook", ForEmail("bob@example.org"));
  crypto_.Store("TrustedPeople").Add(cert);
  const UniqueCert found(Find("bob@example.org"));  // a dialog would hang this test
  EXPECT_TRUE(Same(found.get(), cert));
  crypto_.ExpectBalance(1);
}

TEST_F(SmimeLookup, ALoneCertificateIsTakenEvenWhenExpired) {
  const PCCERT_CONTEXT cert =
      Add("CA", {.name = "A", .emails = {"old@example.org"}, .from_days = -20, .to_days = -10});
  const UniqueCert found(Find("old@example.org"));
  EXPECT_TRUE(Same(found.get(), cert));
}

TEST_F(SmimeLookup, OfTwoTheValidOneIsTakenWithoutADialog) {
  Add("My", {.name = "A", .emails = {"a@example.org"}, .from_days = -20, .to_days = -10});
  const PCCERT_CONTEXT valid = Add("TrustedPeople", ForEmail("a@example.org"));
  Add("TrustedPeople", {.name = "A", .emails = {"a@example.org"}, .from_days = 10, .to_days = 20});
  const UniqueCert found(Find("a@example.org"));
  EXPECT_TRUE(Same(found.get(), valid));
  crypto_.ExpectBalance(1);
}

// The dialog's dates of a certificate.
std::string Dates(int from_days, int to_days, const char* english_format) {
  SYSTEMTIME from;
  SYSTEMTIME to;
  const FILETIME from_time = DaysFromNow(from_days);
  const FILETIME to_time = DaysFromNow(to_days);
  FileTimeToSystemTime(&from_time, &from);
  FileTimeToSystemTime(&to_time, &to);
  char text[256];
  if (std::string(english_format) == "en") {
    wsprintfA(text, "%02u/%02u/%04u\x81\x60%02u/%02u/%04u", from.wMonth, from.wDay, from.wYear, to.wMonth,
              to.wDay, to.wYear);
  } else {
    wsprintfA(text, "%04u/%02u/%02u\x81\x60%04u/%02u/%02u", from.wYear, from.wMonth, from.wDay, to.wYear,
              to.wMonth, to.wDay);
  }
  return text;
}

TEST_F(SmimeLookup, TwoExpiredOnesAreBothShownAsSuch) {
  Add("My", {.name = "A", .emails = {"a@example.org"}, .from_days = -20, .to_days = -10});
  const PCCERT_CONTEXT second =
      Add("My", {.name = "A", .emails = {"a@example.org"}, .from_days = -30, .to_days = -15});
  std::vector<std::string> lines;
  std::string prompt;
  DialogDriver driver(IDC_CERT_CHOICE_LIST, [&](HWND dialog) {
    lines = LinesOf(dialog, IDC_CERT_CHOICE_LIST);
    prompt = TextOf(dialog, IDC_CERT_CHOICE_TEXT);
    EXPECT_EQ(SendDlgItemMessageA(dialog, IDC_CERT_CHOICE_LIST, LB_GETCURSEL, 0, 0), 0);
    SendDlgItemMessageA(dialog, IDC_CERT_CHOICE_LIST, LB_SETCURSEL, 1, 0);
    Press(dialog, IDOK);
  });
  const UniqueCert found(Find("a@example.org"));
  EXPECT_TRUE(Same(found.get(), second));
  EXPECT_EQ(prompt,
            "Two or more certifications found for email addresss: a@example.org. Please select one for use.");
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "\x81\x7E Expiration date=" + Dates(-20, -10, "en") + " Issuer=Test authority",
                       "\x81\x7E Expiration date=" + Dates(-30, -15, "en") + " Issuer=Test authority"}));
  crypto_.ExpectBalance(1);
}

TEST_F(SmimeLookup, ValidOnesAreSwappedToTheFront) {
  Add("My", {.name = "A", .emails = {"a@x"}, .from_days = -20, .to_days = -1});
  Add("My", {.name = "A", .emails = {"a@x"}, .from_days = -20, .to_days = -2});
  const PCCERT_CONTEXT first_valid = Add("My", {.name = "A", .emails = {"a@x"}, .to_days = 3});
  Add("My", {.name = "A", .emails = {"a@x"}, .to_days = 4});
  host_.SetLanguage(Language::kJapanese);
  std::vector<std::string> lines;
  DialogDriver driver(IDC_CERT_CHOICE_LIST, [&](HWND dialog) {
    lines = LinesOf(dialog, IDC_CERT_CHOICE_LIST);
    // A double click takes the selected line.
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDC_CERT_CHOICE_LIST, LBN_DBLCLK), 0);
  });
  const UniqueCert found(Find("a@x"));
  EXPECT_TRUE(Same(found.get(), first_valid));
  const std::string label = Sjis(u8" 有効期限=");
  const std::string tail = Sjis(u8" 発行元=Test authority");
  EXPECT_EQ(lines, (std::vector<std::string>{"\x81\x9B" + label + Dates(-10, 3, "ja") + tail,
                                             "\x81\x9B" + label + Dates(-10, 4, "ja") + tail,
                                             "\x81\x7E" + label + Dates(-20, -1, "ja") + tail,
                                             "\x81\x7E" + label + Dates(-20, -2, "ja") + tail}))
      << "the two expired ones changed places";
}

TEST_F(SmimeLookup, TheStoresAreSearchedInTheirOrder) {
  for (int i = kStoreCount - 1; i >= 0; --i) {
    Add(kStoreNames[i], {.name = "A", .emails = {"a@x"}, .to_days = 20 + i});
  }
  std::vector<std::string> lines;
  HWND owner = nullptr;
  DialogDriver driver(IDC_CERT_CHOICE_LIST, [&](HWND dialog) {
    lines = LinesOf(dialog, IDC_CERT_CHOICE_LIST);
    owner = GetWindow(dialog, GW_OWNER);
    Press(dialog, IDCANCEL);
  });
  EXPECT_EQ(Find("a@x"), kCancelled);
  ASSERT_EQ(lines.size(), 4u);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_NE(lines[i].find(Dates(-10, 20 + static_cast<int>(i), "en")), std::string::npos) << lines[i];
  }
  EXPECT_EQ(owner, host_.frame()) << "the active window";
}

// What went to the host's log while this lives.
class LogKeeper {
 public:
  LogKeeper() {
    lines_.clear();
    services_[32] = reinterpret_cast<void*>(+[](const char* text, unsigned) { lines_.emplace_back(text); });
    GetWFInfoVersion(services_);
  }
  ~LogKeeper() { GetWFInfoVersion(nullptr); }
  std::vector<std::string> Take() { return std::exchange(lines_, {}); }

 private:
  static std::vector<std::string> lines_;
  void* services_[33] = {};
};
std::vector<std::string> LogKeeper::lines_;
using Lines = std::vector<std::string>;

TEST_F(SmimeLookup, ALookUpLeavesItsStepsInTheLog) {
  Add("CA", {.name = "A", .emails = {"a@x"}, .from_days = -20, .to_days = -10});
  Add("TrustedPeople", ForEmail("a@x"));
  const HCERTSTORE stores[] = {nullptr, crypto_.Store("AddressBook").get(), crypto_.Store("CA").get(),
                               crypto_.Store("TrustedPeople").get()};
  LogKeeper log;
  RecipientCerts found;
  EXPECT_TRUE(found.Find(stores, "a@x", 0));
  EXPECT_EQ(log.Take(), (Lines{"AllocCertToArray", "FindCertByEmail a@x", "store 0 not found",
                               "found store=2", "found store=3", "0:time invalid"}));
  BoxCloser closer;
  EXPECT_FALSE(RecipientCerts().Find(stores, "b@x", 0));
  EXPECT_EQ(log.Take().back(), "The certificate not found. email address=b@x");
  ShowSmimeError("Step");
  EXPECT_EQ(log.Take().back().find("Error occurred in S/MIME: Step, "), 0u);
  EXPECT_EQ(closer.boxes().size(), 2u);
}

TEST_F(SmimeLookup, CancellingGivesTheCancelledResult) {
  Add("My", ForEmail("a@x"));
  Add("My", ForEmail("a@x"));
  DialogDriver driver(IDC_CERT_CHOICE_LIST, IDCANCEL);
  EXPECT_EQ(Find("a@x"), kCancelled);
  EXPECT_EQ(driver.count(), 1);
  crypto_.ExpectBalance();
}

TEST_F(SmimeLookup, ARememberedChoiceNeedsNoDialog) {
  Add("My", ForEmail("a@x"));
  const PCCERT_CONTEXT second = Add("AddressBook", ForEmail("a@x"));
  Add("AddressBook", ForEmail("a@x"));
  AnswerNumbers();
  const UniqueCert found(Find("a@x", NumberOf(second)));
  EXPECT_TRUE(Same(found.get(), second));
  crypto_.ExpectBalance(1);
}

TEST_F(SmimeLookup, ARememberedChoiceThatExpiredAsksAgain) {
  const PCCERT_CONTEXT expired = Add("My", {.name = "A", .emails = {"a@x"}, .from_days = -9, .to_days = -1});
  const PCCERT_CONTEXT first = Add("My", ForEmail("a@x"));
  Add("My", ForEmail("a@x"));
  AnswerNumbers();
  DialogDriver driver(IDC_CERT_CHOICE_LIST, IDOK);
  const UniqueCert found(Find("a@x", NumberOf(expired)));
  EXPECT_TRUE(Same(found.get(), first));
  EXPECT_EQ(driver.count(), 1);
}

TEST_F(SmimeLookup, NoMoreThan64CandidatesAreSeen) {
  for (int i = 0; i < 65; ++i) Add("My", {.name = "A", .emails = {"a@x"}, .to_days = 5 + i});
  std::vector<std::string> lines;
  DialogDriver driver(IDC_CERT_CHOICE_LIST, [&](HWND dialog) {
    lines = LinesOf(dialog, IDC_CERT_CHOICE_LIST);
    SendDlgItemMessageA(dialog, IDC_CERT_CHOICE_LIST, LB_SETCURSEL, 63, 0);
    Press(dialog, IDOK);
  });
  const UniqueCert found(Find("a@x"));
  EXPECT_EQ(lines.size(), 64u);
  EXPECT_TRUE(Same(found.get(), kept_[63]));
  crypto_.ExpectBalance(1);
}

TEST_F(SmimeLookup, AStoreThatDidNotOpenIsSkipped) {
  const PCCERT_CONTEXT cert = Add("CA", ForEmail("a@x"));
  const HCERTSTORE stores[] = {nullptr, crypto_.Store("CA").get()};
  const UniqueCert found(FindCertByEmail(stores, 2, "a@x", 0, false));
  EXPECT_TRUE(Same(found.get(), cert));
}

TEST_F(SmimeLookup, AMissingCertificateIsReportedOnlyWhenAsking) {
  EXPECT_EQ(Find("nobody@x"), nullptr);
  EXPECT_EQ(Find("nobody@x", 0, true), nullptr);
  host_.ExpectMessages(
      {"The target certificate not found in \"Personal\" certificate store. email address =  nobody@x"});
}

TEST_F(SmimeLookup, RecipientsAreFoundOneByOne) {
  const PCCERT_CONTEXT a = Add("AddressBook", ForEmail("a@x"));
  const PCCERT_CONTEXT b = Add("TrustedPeople", ForEmail("b@x"));
  HCERTSTORE stores[kStoreCount];
  for (int i = 0; i < kStoreCount; ++i) stores[i] = crypto_.Store(kStoreNames[i]).get();
  {
    RecipientCerts found;
    ASSERT_TRUE(found.Find(stores, "a@x b@x a@x", 0));
    ASSERT_EQ(found.count(), 3u);
    EXPECT_TRUE(Same(found.certs()[0], a));
    EXPECT_TRUE(Same(found.certs()[1], b));
    EXPECT_TRUE(Same(found.certs()[2], a));
    crypto_.ExpectBalance(3);
  }
  crypto_.ExpectBalance();
  BoxCloser closer;
  RecipientCerts missing;
  EXPECT_FALSE(missing.Find(stores, "a@x  b@x", 0)) << "two blanks give an empty address";
  ASSERT_EQ(closer.boxes().size(), 1u);
  EXPECT_EQ(closer.boxes()[0].text, "The certificate not found. email address=");
}

TEST_F(SmimeLookup, ARecipientOf128BytesIsTooLong) {
  const std::string longest = std::string(125, 'a') + "@x";  // 127 bytes
  Add("AddressBook", {.name = "A", .emails = {longest}});
  HCERTSTORE stores[kStoreCount] = {nullptr, crypto_.Store("AddressBook").get(), nullptr, nullptr};
  RecipientCerts found;
  EXPECT_TRUE(found.Find(stores, longest.c_str(), 0));
  RecipientCerts refused;
  EXPECT_FALSE(refused.Find(stores, (longest + " a" + longest).c_str(), 0));
  host_.ExpectMessages({"There is a very long email address in the recipients. It cannot be processed."});
}

TEST_F(SmimeLookup, TheDialogShowsForASingleCertificateToo) {
  const PCCERT_CONTEXT cert = Add("My", ForEmail("me@x"));
  host_.Expect(216).Any().Int(2).Answer(0x1FFFFFFFFLL);
  DialogDriver driver(IDC_CERT_CHOICE_LIST, IDOK);
  EXPECT_EQ(SelectCertCrcDialog("me@x"), 0xFFFFFFFFu) << "the low 32 bits of the answer";
  EXPECT_EQ(driver.count(), 1);
  (void)cert;
  crypto_.ExpectBalance();
}

TEST_F(SmimeLookup, TheChoiceFailsWithZero) {
  EXPECT_EQ(SelectCertCrcDialog(kNumberForText), 0u);
  host_.ExpectMessages({kStringMessageEnglish});
  EXPECT_EQ(SelectCertCrcDialog("me@x"), 0u);
  host_.ExpectMessages(
      {"The target certificate not found in \"Personal\" certificate store. email address =  me@x"});
  Add("My", ForEmail("me@x"));
  {
    DialogDriver driver(IDC_CERT_CHOICE_LIST, IDCANCEL);
    EXPECT_EQ(SelectCertCrcDialog("me@x"), 0u);
  }
  crypto_.missing_stores = {"My"};
  BoxCloser closer;
  EXPECT_EQ(SelectCertCrcDialog("me@x"), 0u);
  ASSERT_EQ(closer.boxes().size(), 1u);
  EXPECT_EQ(closer.boxes()[0].text,
            "Error occurred in S/MIME: CertOpenStore failed, \nerror code=0x00000005");
  EXPECT_EQ(closer.boxes()[0].owner, host_.frame());
  crypto_.ExpectBalance();
}

TEST_F(SmimeLookup, AStoreOfAMessageIsHandedOverOnce) {
  EXPECT_EQ(RetrieveCertificate(), nullptr);
  KeepMessageStore(g_crypto.CertOpenSystemStoreA(0, "My"));
  KeepMessageStore(g_crypto.CertOpenSystemStoreA(0, "My"));
  crypto_.ExpectBalance(0, 1);
  void* const store = RetrieveCertificate();
  EXPECT_NE(store, nullptr);
  EXPECT_EQ(RetrieveCertificate(), nullptr);
  EXPECT_EQ(FreeCertificate(store), 1);
  crypto_.ExpectBalance();
  EXPECT_EQ(FreeCertificate(nullptr), 0);
  EXPECT_EQ(FreeCertificate(reinterpret_cast<void*>(7)), 0);
}

TEST(SmimeBinding, WithoutCrypt32AllFailsWithABox) {
  ScriptedHost host;
  CountedCrypto crypto;
  crypto.missing_modules = {"crypt32.dll"};
  BoxCloser closer;
  EXPECT_FALSE(LoadCryptoLibrary());
  EXPECT_EQ(SelectCertCrcDialog("me@x"), 0u);
  EXPECT_EQ(RetrieveCertificate(), nullptr);
  ASSERT_EQ(closer.boxes().size(), 3u);
  EXPECT_EQ(closer.boxes()[0].text,
            "Error occurred in S/MIME: " +
                Sjis(u8"Failed to load crypt32.dll or version too old. So you cannot use S/MIME functions.\n"
                     u8"（Maybe Windows or Internet Explorer is too old)") +
                ", \nerror code=0x0000007E");
  crypto.missing_modules.clear();
  EXPECT_TRUE(LoadCryptoLibrary()) << "tried again on the next call";
}

TEST(SmimeBinding, BoxesAreJapaneseInJapaneseMode) {
  ScriptedHost host(Language::kJapanese);
  CountedCrypto crypto;
  crypto.missing_modules = {"crypt32.dll"};
  BoxCloser closer;
  EXPECT_FALSE(LoadCryptoLibrary());
  ASSERT_EQ(closer.boxes().size(), 1u);
  EXPECT_EQ(closer.boxes()[0].text,
            Sjis(u8"S/MIMEでのエラー: crypt32.dllがロードできないか、またはバージョンが古いです。"
                 u8"S/MIMEは使えません。\n（WindowsまたはInternet Explorerが古いとダメです）, \n"
                 u8"エラーコード=0x0000007E"));
}

TEST(SmimeBinding, WithoutCryptuiOnlyTheDisplayIsLost) {
  CountedCrypto crypto;
  crypto.missing_modules = {"cryptui.dll"};
  EXPECT_TRUE(LoadCryptoLibrary());
  EXPECT_EQ(g_crypto.CryptUIDlgViewContext, nullptr);
}

TEST(SmimeBinding, TheNewerViewerStandsInForTheOther) {
  CountedCrypto crypto;
  static CRYPTUI_VIEWCERTIFICATE_STRUCTW seen;
  static bool changed_flag_given;
  crypto.missing_entries = {"CryptUIDlgViewContext"};
  crypto.replaced["CryptUIDlgViewCertificateW"] =
      reinterpret_cast<void*>(+[](PCCRYPTUI_VIEWCERTIFICATE_STRUCTW view, BOOL* changed) -> BOOL {
        seen = *view;
        changed_flag_given = changed != nullptr;
        return TRUE;
      });
  ASSERT_TRUE(LoadCryptoLibrary());
  ASSERT_NE(g_crypto.CryptUIDlgViewContext, nullptr);
  Authority authority("Shown");
  EXPECT_TRUE(g_crypto.CryptUIDlgViewContext(CERT_STORE_CERTIFICATE_CONTEXT, authority.cert(),
                                             reinterpret_cast<HWND>(0x123), L"Title", 0, nullptr));
  EXPECT_EQ(seen.dwSize, sizeof seen);
  EXPECT_EQ(seen.pCertContext, authority.cert());
  EXPECT_EQ(seen.hwndParent, reinterpret_cast<HWND>(0x123));
  EXPECT_STREQ(seen.szTitle, L"Title");
  EXPECT_FALSE(changed_flag_given);
}

bool g_viewerWasThere;
void* WatchedEntry(HMODULE module, const char* name) {
  g_viewerWasThere = g_viewerWasThere && g_crypto.CryptUIDlgViewContext != nullptr;
  if (std::string_view(name) == "CryptUIDlgViewContext") return nullptr;
  return reinterpret_cast<void*>(GetProcAddress(module, name));
}

TEST(SmimeBinding, WhatIsBoundStaysSoWhileAnotherThreadBinds) {
  const CountedCrypto crypto;  // gives everything back
  g_cryptoLoader.entry = &WatchedEntry;
  ASSERT_TRUE(LoadCryptoLibrary());
  ASSERT_NE(g_crypto.CryptUIDlgViewContext, nullptr) << "the newer viewer";
  g_viewerWasThere = true;
  ASSERT_TRUE(LoadCryptoLibrary());
  EXPECT_TRUE(g_viewerWasThere);
}

TEST(SmimeBindingDeathTest, AnErrorTextOf1023CharactersEndsTheProcess) {
  // "Error occurred in S/MIME: " and ", \nerror code=0x01234567" are 26 and 24 characters.
  ScriptedHost host;
  const std::string fits(1022 - 50, 'a');
  SetLastError(0);
  {
    BoxCloser closer;
    ShowSmimeError(fits.c_str());
    ASSERT_EQ(closer.boxes().size(), 1u);
    EXPECT_EQ(closer.boxes()[0].text.size(), 1022u);
  }
  EXPECT_DEATH(ShowSmimeError((fits + "a").c_str()), "");
}

TEST(SmimeBindingDeathTest, AnAddressAttributeOf512BytesEndsTheProcess) {
  ASSERT_TRUE(LoadCryptoLibrary());
  Authority authority("Long");
  const UniqueCert fits(authority.Issue({.name = "A", .emails = {std::string(511, 'a')}}));
  EXPECT_TRUE(CertMatchesEmailBySubject(fits.get(), std::string(511, 'A').c_str()));
  const UniqueCert too_long(authority.Issue({.name = "A", .emails = {std::string(512, 'a')}}));
  EXPECT_DEATH(CertMatchesEmailBySubject(too_long.get(), "a@x"), "");
}

}  // namespace
}  // namespace wfinfo_test
