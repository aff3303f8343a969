// Revocation: which certificates are checked, where the lists come from, what the control shows, and
// the download.
#include <gtest/gtest.h>

#include "src/smime/crl_download_win.h"
#include "src/smime/revocation_win.h"
#include "tests/inside/smime/fake_web.h"
#include "tests/inside/smime/support.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::smime;

TEST(SmimeDownload, BringsAllBytesInABlockWithSpareOnes) {
  FakeWeb fake;
  for (const std::size_t size : {0u, 1u, 0xFFFFu, 0x10000u, 0x1FFFFu, 0x20000u, 0x20001u, 0x75301u}) {
    std::string page(size, '\0');
    for (std::size_t i = 0; i < size; ++i) page[i] = static_cast<char>(i * 7);
    fake.web.pages["http://x/l"] = page;
    DWORD got = 1;
    char error[kDownloadErrorRoom];
    fake.web.open = 0;
    const HLOCAL block = DownloadCrl("http://x/l", &got, error);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(got, size);
    EXPECT_EQ(LocalSize(block), size + 16);
    EXPECT_EQ(std::string(static_cast<const char*>(LocalLock(block)), size), page);
    LocalUnlock(block);
    LocalFree(block);
    EXPECT_EQ(fake.web.open, 2) << "both handles stay open after a success";
  }
  // A server may send it in pieces.
  fake.web.largest_read = 1000;
  DWORD got = 0;
  char error[kDownloadErrorRoom];
  const HLOCAL block = DownloadCrl("http://x/l", &got, error);
  EXPECT_EQ(std::string(static_cast<const char*>(LocalLock(block)), got), fake.web.pages["http://x/l"]);
  LocalUnlock(block);
  LocalFree(block);
  EXPECT_EQ(fake.web.agent, "TamarinMail CRL retriever");
  EXPECT_EQ(fake.web.flags, 0x000C0200u);
  EXPECT_EQ(fake.web.headers, "");
}

TEST(SmimeDownload, TellsWhatFailedAndClosesItsHandles) {
  FakeWeb fake;
  DWORD size = 9;
  char error[kDownloadErrorRoom];
  fake.web.open_fails = true;
  EXPECT_EQ(DownloadCrl("http://x/l", &size, error), nullptr);
  EXPECT_STREQ(error, "InternetOpen failed.");
  fake.web.open_fails = false;
  fake.web.url_error = 12007;
  EXPECT_EQ(DownloadCrl("http://x/l", &size, error), nullptr);
  EXPECT_STREQ(error, "InternetOpenUrl failed, error code=12007");
  fake.web.url_error = 0;
  fake.web.read_error = 12030;
  EXPECT_EQ(DownloadCrl("http://x/l", &size, error), nullptr);
  EXPECT_STREQ(error, "InternetReadFile failed, error code=12030");
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(fake.web.open, 0);
  const wfinfo::WinInetBinding* const web = wfinfo::g_winInet.exchange(&wfinfo::kNoWinInet);
  EXPECT_EQ(DownloadCrl("http://x/l", &size, error), nullptr);
  EXPECT_STREQ(error, "WININET.DLL load failed.");
  wfinfo::g_winInet = web;
}

constexpr char kHead[] = "\r\n\r\n----Checking revocation--------\r\n";
constexpr char kGood[] = "  \x81\x9B The certificate is not revoked. (CertVerifyCRLRevocation succeeded)\r\n";
constexpr char kLocal[] = "  A valid revocation list was obtained from the Windows certificate store.\r\n";

class SmimeRevocation : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(LoadCryptoLibrary());
    control_ = CreateWindowExA(0, "EDIT", "", WS_CHILD | ES_MULTILINE | ES_AUTOVSCROLL | ES_AUTOHSCROLL, 0, 0,
                               100, 100, host_.frame(), nullptr, GetModuleHandleA(nullptr), nullptr);
    host_.Expect(313).Any().Always().Do([this](const Request& request) {
      ++conversions_;
      const auto* const text = reinterpret_cast<const char*>(request.block[0]);
      wide_.assign(4096, L'\0');
      MultiByteToWideChar(932, 0, text, -1, wide_.data(), 4096);
      return static_cast<Slot>(reinterpret_cast<INT_PTR>(wide_.data()));
    });
    crypto_.Store("CA");
  }
  void TearDown() override {
    crypto_.ExpectBalance();
    for (const PCCERT_CONTEXT cert : kept_) CertFreeCertificateContext(cert);
    DestroyWindow(control_);
  }
  PCCERT_CONTEXT Person(const std::string& email, CertSpec spec = {}) {
    spec.name = email;
    spec.emails = {email};
    if (spec.crl_urls.empty()) spec.crl_urls = {"http://x/root.crl"};
    kept_.push_back(root_.Issue(spec));
    return kept_.back();
  }
  // What a check adds to the report.
  std::string Check(const std::string& report = "") {
    SetWindowTextA(control_, report.c_str());
    SendMessageA(control_, EM_SETSEL, 0x7FFFFFFF, 0x7FFFFFFF);
    result_ = SMIMEVerifyRevocation(carried_.get(), control_);
    return Text().substr(report.size());
  }
  std::string Text() { return HostTextOf(control_); }
  void Serve(const std::string& list) { fake_.web.pages["http://x/root.crl"] = list; }
  void AddList(const std::string& list) {
    const PCCRL_CONTEXT crl = CertCreateCRLContext(
        X509_ASN_ENCODING, reinterpret_cast<const BYTE*>(list.data()), static_cast<DWORD>(list.size()));
    ASSERT_NE(crl, nullptr);
    EXPECT_TRUE(CertAddCRLContextToStore(crypto_.Store("CA").get(), crl, CERT_STORE_ADD_ALWAYS, nullptr));
    CertFreeCRLContext(crl);
  }

  ScriptedHost host_;
  CountedCrypto crypto_;
  FakeWeb fake_;
  Authority root_{"Root"};
  MemoryStore carried_;
  std::vector<PCCERT_CONTEXT> kept_;
  HWND control_ = nullptr;
  std::wstring wide_;
  int conversions_ = 0;
  int result_ = -1;
};

TEST_F(SmimeRevocation, ADownloadedListIsFoundInTheStoreTheNextTime) {
  carried_.Add(Person("a@x"));
  carried_.Add(root_.cert());
  const std::string list = root_.Revoke({});
  Serve(list);
  EXPECT_EQ(Check(),
            kHead +
                std::string("a@x\r\n  Downloading revocation list... http://x/root.crl\r\n"
                            "  The revocation list was obtained successfully, size=") +
                std::to_string(list.size()) + "Bytes\r\n" + kGood +
                "The downloaded  1 revocation lists are registered to the Windows certificate store.\r\n");
  EXPECT_EQ(result_, 1);
  EXPECT_EQ(conversions_, 1) << "only the text with the good mark goes through the host";
  EXPECT_EQ(Check(), kHead + std::string("a@x\r\n") + kLocal + kGood);
  EXPECT_EQ(fake_.web.asked.size(), 1u) << "no second download";
}

TEST_F(SmimeRevocation, AnExpiredListInTheStoreIsPassedOver) {
  carried_.Add(Person("a@x"));
  carried_.Add(root_.cert());
  AddList(root_.Revoke({}, -20, -10));
  Serve(root_.Revoke({}));
  EXPECT_NE(Check().find("Downloading"), std::string::npos);
  EXPECT_EQ(fake_.web.asked.size(), 1u);
}

TEST_F(SmimeRevocation, ARevokedCertificateIsToldWithItsCode) {
  const PCCERT_CONTEXT person = Person("a@x");
  carried_.Add(person);
  carried_.Add(root_.cert());
  AddList(root_.Revoke({person}));
  crypto_.replaced["CertVerifyCRLRevocation"] =
      reinterpret_cast<void*>(+[](DWORD, PCERT_INFO, DWORD, PCRL_INFO*) -> BOOL {
        SetLastError(0x80092010);
        return FALSE;
      });
  EXPECT_EQ(Check(), kHead + std::string("a@x\r\n") + kLocal +
                         "  \x81\x7E !!!! CertVerifyCRLRevocation failed, The certificate is revoked.\r\n"
                         "error code=0x80092010\r\n");
  EXPECT_EQ(conversions_, 0);
  crypto_.replaced["CertVerifyCRLRevocation"] =
      reinterpret_cast<void*>(+[](DWORD, PCERT_INFO, DWORD, PCRL_INFO*) -> BOOL {
        SetLastError(3);
        return FALSE;
      });
  EXPECT_EQ(Check(), kHead + std::string("a@x\r\n") + kLocal +
                         "  \x81\x7E !!!! CertVerifyCRLRevocation failed, error code=0x00000003\r\n");
  EXPECT_EQ(result_, 1) << "checked to the end, whatever was found";
}

TEST_F(SmimeRevocation, ARevokedCertificateNeedsNoErrorOfTheSystem) {
  carried_.Add(Person("a@x"));
  carried_.Add(root_.cert());
  AddList(root_.Revoke({}));
  crypto_.replaced["CertVerifyCRLRevocation"] =
      reinterpret_cast<void*>(+[](DWORD, PCERT_INFO, DWORD, PCRL_INFO*) -> BOOL { return FALSE; });
  EXPECT_EQ(Check(), kHead + std::string("a@x\r\n") + kLocal +
                         "  \x81\x7E !!!! CertVerifyCRLRevocation failed, The certificate is revoked.\r\n"
                         "error code=0x80092010\r\n");
}

TEST_F(SmimeRevocation, AListInTheStoreHasToBeSignedByTheIssuer) {
  carried_.Add(Person("a@x"));
  carried_.Add(root_.cert());
  Authority namesake("Root", &root_);  // the same name, another key
  AddList(namesake.Revoke({}));
  Serve(root_.Revoke({kept_.back()}));
  const std::string added = Check();
  EXPECT_NE(added.find("Downloading"), std::string::npos) << added;
  EXPECT_EQ(added.find(kGood), std::string::npos) << added;
}

TEST_F(SmimeRevocation, ListsAreLookedUpWithoutAnEncoding) {
  static DWORD encoding;
  encoding = 1;
  crypto_.replaced["CertFindCRLInStore"] = reinterpret_cast<void*>(
      +[](HCERTSTORE, DWORD asked, DWORD, DWORD, const void*, PCCRL_CONTEXT) -> PCCRL_CONTEXT {
        encoding = asked;
        return nullptr;
      });
  carried_.Add(Person("a@x"));
  carried_.Add(root_.cert());
  Check();
  EXPECT_EQ(encoding, 0u) << "the page says that it must be zero";
}

TEST_F(SmimeRevocation, ValidityIsToldToo) {
  carried_.Add(Person("a@x", {.from_days = -20, .to_days = -10}));
  carried_.Add(root_.cert());
  AddList(root_.Revoke({}));
  EXPECT_NE(Check().find("a@x\r\n  \x81\x7E !!!! The certificate has expired.\r\n"), std::string::npos)
      << Text();
  MemoryStore early;
  early.Add(Person("b@x", {.from_days = 10, .to_days = 20}));
  early.Add(root_.cert());
  SetWindowTextA(control_, "");
  SMIMEVerifyRevocation(early.get(), control_);
  EXPECT_NE(Text().find("  \x81\x7E !!!! The certificate validity is in the future.\r\n"), std::string::npos);
}

TEST_F(SmimeRevocation, PointsOfDistributionDecideTheDownload) {
  const struct {
    std::vector<std::string> urls;
    const char* line;
  } cases[] = {
      {{"ldap://x/cn=y"},
       "  \x81\x7E The revocation list distribution point is not http (TamarinMail needs http protocol)\r\n"},
      {{"https://x/y", "HTTP://x/second.crl"}, "  Downloading revocation list... HTTP://x/second.crl"},
      {{"http://x/" + std::string(503, 'y'), "http://x/short"},
       "  Downloading revocation list... http://x/short"},
  };
  for (const auto& test : cases) {
    MemoryStore store;
    store.Add(Person("a@x", {.crl_urls = test.urls}));
    store.Add(root_.cert());
    SetWindowTextA(control_, "");
    EXPECT_EQ(SMIMEVerifyRevocation(store.get(), control_), 1);
    EXPECT_NE(Text().find(test.line), std::string::npos) << Text();
  }
  MemoryStore none;
  kept_.push_back(root_.Issue(ForEmail("n@x")));
  none.Add(kept_.back());
  none.Add(root_.cert());
  SetWindowTextA(control_, "");
  EXPECT_EQ(SMIMEVerifyRevocation(none.get(), control_), 1);
  EXPECT_NE(Text().find("  \x81\x7E The revocation list distribution point is unknown.\r\n"),
            std::string::npos);
}

TEST_F(SmimeRevocation, AFailedDownloadIsTold) {
  carried_.Add(Person("a@x"));
  carried_.Add(root_.cert());
  fake_.web.url_error = 12029;
  EXPECT_EQ(Check(), kHead + std::string("a@x\r\n  Downloading revocation list... http://x/root.crl\r\n  "
                                         "InternetOpenUrl failed, error code=12029\r\n"));
  EXPECT_EQ(result_, 1);
}

TEST_F(SmimeRevocation, EnglishChecksTheFirstWithAnAddress) {
  // The label is shorter than the distance: the address is read as "@x", nobody has it, and a second
  // pass follows.
  carried_.Add(Person("first@x"));
  carried_.Add(Person("b@x"));
  carried_.Add(root_.cert());
  AddList(root_.Revoke({}));
  EXPECT_EQ(Check("Signer email address: b@x\r\n"), kHead + std::string("first@x\r\n") + kLocal + kGood);
  EXPECT_EQ(Check("no label"), kHead + std::string("first@x\r\n") + kLocal + kGood)
      << "without a label all count";
}

TEST_F(SmimeRevocation, JapaneseChecksTheSigner) {
  carried_.Add(Person("first@x"));
  carried_.Add(Person("b@x"));
  carried_.Add(root_.cert());
  AddList(root_.Revoke({}));
  host_.SetLanguage(Language::kJapanese);
  const std::string label = Sjis(u8"署名者メールアドレス： ");
  ASSERT_EQ(label.size(), 23u);
  const std::string added = Check(label + "B@x\r\n");
  EXPECT_NE(added.find("b@x\r\n"), std::string::npos) << added;
  EXPECT_EQ(added.find("first@x"), std::string::npos);
  EXPECT_EQ(conversions_, 0) << "Japanese texts go as they are";
  const std::string other = Check(label + "nobody@x\r\n");
  EXPECT_NE(other.find("first@x\r\n"), std::string::npos) << "nobody has it: all count";
}

TEST_F(SmimeRevocation, ANameDoesNotSteerTheCheckToAnother) {
  carried_.Add(Person("other@x"));
  carried_.Add(Person("signer@x"));
  carried_.Add(root_.cert());
  AddList(root_.Revoke({}));
  host_.SetLanguage(Language::kJapanese);
  const std::string label = Sjis(u8"署名者メールアドレス： ");
  const std::string added = Check(Sjis(u8"署名者： ") + "A" + label + "other@x\r\n" + label + "signer@x\r\n");
  EXPECT_NE(added.find("signer@x\r\n"), std::string::npos) << added;
  EXPECT_EQ(added.find("other@x"), std::string::npos) << added;
}

TEST_F(SmimeRevocation, WithoutAnythingToCheckThatIsTold) {
  EXPECT_EQ(Check(), kHead + std::string("\x81\x7E Certificate not found.\r\n"));
  EXPECT_EQ(result_, 0);
  carried_.Add(root_.cert());  // no address
  EXPECT_EQ(Check(), kHead + std::string("\x81\x7E Certificate not found.\r\n"));
  Authority lone("Lone", nullptr, {.emails = {"lone@x"}});
  MemoryStore store;
  store.Add(lone.cert());
  SetWindowTextA(control_, "");
  EXPECT_EQ(SMIMEVerifyRevocation(store.get(), control_), 0);
  EXPECT_EQ(Text(), kHead + std::string("\x81\xA2 Failed to create certficate chain."));
}

TEST_F(SmimeRevocation, AfterACertificateThatIsNotCheckedToTheEndTheNextFollows) {
  Authority lone("Lone", nullptr, {.emails = {"lone@x"}});
  carried_.Add(lone.cert());
  carried_.Add(Person("b@x"));
  carried_.Add(root_.cert());
  AddList(root_.Revoke({}));
  const std::string no_chain = "\x81\xA2 Failed to create certficate chain.";
  EXPECT_EQ(Check(), kHead + no_chain + "b@x\r\n" + kLocal + kGood);
  EXPECT_EQ(result_, 1);
  // In Japanese mode the signer alone is checked: there was a check, so nobody else is.
  host_.SetLanguage(Language::kJapanese);
  const std::string added = Check(Sjis(u8"署名者メールアドレス： ") + "lone@x\r\n");
  EXPECT_EQ(result_, 0);
  EXPECT_EQ(added.find("b@x"), std::string::npos) << added;
}

// Chains are built with the "CA" store only, or with any other.
HCERTSTORE g_refusedStore = nullptr;
BOOL WINAPI ChainWithoutStore(HCERTCHAINENGINE engine, PCCERT_CONTEXT cert, LPFILETIME time, HCERTSTORE store,
                              PCERT_CHAIN_PARA para, DWORD flags, LPVOID reserved,
                              PCCERT_CHAIN_CONTEXT* chain) {
  if (store == g_refusedStore) return FALSE;
  return CertGetCertificateChain(engine, cert, time, store, para, flags, reserved, chain);
}

TEST_F(SmimeRevocation, AChainIsTriedAgainWithTheStoreOfAuthorities) {
  carried_.Add(Person("a@x"));
  crypto_.Store("CA").Add(root_.cert());
  AddList(root_.Revoke({}));
  g_refusedStore = carried_.get();
  crypto_.replaced["CertGetCertificateChain"] = reinterpret_cast<void*>(&ChainWithoutStore);
  crypto_.replaced["CertFreeCertificateChain"] = reinterpret_cast<void*>(&CertFreeCertificateChain);
  EXPECT_EQ(Check(), kHead + std::string("a@x\r\n") + kLocal + kGood);
  EXPECT_EQ(result_, 1);
}

// Cuts a name to its room, as documented; Wine's gives no name at all then.
DWORD WINAPI CutName(PCCERT_CONTEXT cert, DWORD type, DWORD flags, void* para, LPSTR name, DWORD room) {
  char whole[1024];
  const DWORD size = CertGetNameStringA(cert, type, flags, para, whole, sizeof whole);
  lstrcpynA(name, whole, static_cast<int>(room));
  return std::min(size, room);
}

TEST_F(SmimeRevocation, ANameIsShownUpTo122Bytes) {
  crypto_.replaced["CertGetNameStringA"] = reinterpret_cast<void*>(&CutName);
  const std::string name(200, 'n');
  kept_.push_back(root_.Issue({.name = name, .emails = {"a@x"}}));
  carried_.Add(kept_.back());
  carried_.Add(root_.cert());
  EXPECT_EQ(Check().find(kHead + name.substr(0, 122) + "\r\n"), 0u) << Text();
}

TEST_F(SmimeRevocation, AListThatIsNotKeptIsUsedAllTheSame) {
  carried_.Add(Person("a@x"));
  carried_.Add(root_.cert());
  Serve(root_.Revoke({}));
  static DWORD disposition;
  crypto_.replaced["CertAddCRLContextToStore"] =
      reinterpret_cast<void*>(+[](HCERTSTORE, PCCRL_CONTEXT, DWORD how, PCCRL_CONTEXT*) -> BOOL {
        disposition = how;
        return FALSE;
      });
  const std::string added = Check();
  EXPECT_EQ(disposition, static_cast<DWORD>(CERT_STORE_ADD_REPLACE_EXISTING));
  EXPECT_NE(added.find(kGood), std::string::npos) << added;
  EXPECT_EQ(added.find("are registered"), std::string::npos) << added;
}

// Two distribution points, both with the same address; only the second one is a full name.
BOOL WINAPI DecodePoints(DWORD encoding, LPCSTR structure, const BYTE* encoded, DWORD size, DWORD flags,
                         PCRYPT_DECODE_PARA para, void* object, DWORD* object_size) {
  if (structure != X509_CRL_DIST_POINTS)
    return CryptDecodeObjectEx(encoding, structure, encoded, size, flags, para, object, object_size);
  static wchar_t relative[] = L"http://x/relative";
  static wchar_t full[] = L"http://x/full";
  static CERT_ALT_NAME_ENTRY names[2];
  static CRL_DIST_POINT points[2];
  for (int i = 0; i < 2; ++i) {
    names[i].dwAltNameChoice = CERT_ALT_NAME_URL;
    names[i].pwszURL = i == 0 ? relative : full;
    points[i].DistPointName.dwDistPointNameChoice =
        i == 0 ? CRL_DIST_POINT_ISSUER_RDN_NAME : CRL_DIST_POINT_FULL_NAME;
    points[i].DistPointName.FullName = {1, &names[i]};
  }
  auto* const info = static_cast<CRL_DIST_POINTS_INFO*>(LocalAlloc(LPTR, sizeof(CRL_DIST_POINTS_INFO)));
  *info = {2, points};
  *static_cast<void**>(object) = info;
  return TRUE;
}

TEST_F(SmimeRevocation, OnlyPointsWithAFullNameCount) {
  carried_.Add(Person("a@x"));
  carried_.Add(root_.cert());
  crypto_.replaced["CryptDecodeObjectEx"] = reinterpret_cast<void*>(&DecodePoints);
  Check();
  EXPECT_EQ(fake_.web.asked, std::vector<std::string>{"http://x/full"});
}

TEST_F(SmimeRevocation, AChainThatCannotBeBuiltIsTold) {
  carried_.Add(Person("a@x"));
  crypto_.missing_entries = {"CertGetCertificateChain"};
  EXPECT_EQ(Check(), kHead + std::string("\x81\xA2 Failed to create certificate chain."));
  EXPECT_EQ(result_, 0);
}

TEST_F(SmimeRevocation, AnOldCrypt32CannotCheck) {
  crypto_.missing_entries = {"CertVerifyCRLRevocation"};
  EXPECT_EQ(
      Check(),
      kHead + std::string("\x81\xA2 Cannot check revocation because Windows crypt32.dll is too old.\r\n"));
  EXPECT_EQ(result_, 0);
  EXPECT_EQ(SMIMEVerifyRevocation_Cert(root_.cert(), nullptr, control_), 0);
}

TEST_F(SmimeRevocation, ASingleCertificateCanBeChecked) {
  const PCCERT_CONTEXT person = Person("a@x");
  carried_.Add(root_.cert());
  AddList(root_.Revoke({}));
  EXPECT_EQ(SMIMEVerifyRevocation_Cert(person, carried_.get(), control_), 1);
  EXPECT_EQ(Text(), std::string("a@x\r\n") + kLocal + kGood);
  EXPECT_EQ(SMIMEVerifyRevocation_Cert(nullptr, carried_.get(), control_), 0);
  EXPECT_EQ(SMIMEVerifyRevocation_Cert(kNumberForText, carried_.get(), control_), 0);
  EXPECT_EQ(SMIMEVerifyRevocation(nullptr, control_), 0);
}

}  // namespace
}  // namespace wfinfo_test
