// Revocation: which certificates are checked, where the lists come from, what the control shows, and the
// download.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "net/wininet_binding_win.h"
#include "smime/crl_download_win.h"
#include "smime/revocation_win.h"
#include "smime/support.h"
#include "support/library.h"
#include "support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::smime;

// A WinINet of its own: pages by address, or errors.
struct Web {
  std::map<std::string, std::string> pages;
  std::vector<std::string> asked;
  std::string agent;
  DWORD flags = 0;
  int open = 0;
  bool open_fails = false;
  DWORD url_error = 0;
  DWORD read_error = 0;
  DWORD largest_read = 0xFFFFFFFF;
  std::string current;
  std::size_t at = 0;
};
Web* g_web = nullptr;

class FakeWeb {
 public:
  FakeWeb() {
    wfinfo::EnsureWinInet();
    saved_ = wfinfo::g_winInet;
    g_web = &web;
    wfinfo::g_winInet.InternetOpenA = [](LPCSTR agent, DWORD, LPCSTR, LPCSTR, DWORD) -> HINTERNET {
      g_web->agent = agent;
      if (g_web->open_fails) return nullptr;
      ++g_web->open;
      return reinterpret_cast<HINTERNET>(1);
    };
    wfinfo::g_winInet.InternetOpenUrlA = [](HINTERNET, LPCSTR url, LPCSTR, DWORD, DWORD flags,
                                            DWORD_PTR) -> HINTERNET {
      g_web->asked.emplace_back(url);
      g_web->flags = flags;
      SetLastError(g_web->url_error);
      if (g_web->url_error != 0) return nullptr;
      g_web->current = g_web->pages[url];
      g_web->at = 0;
      ++g_web->open;
      return reinterpret_cast<HINTERNET>(2);
    };
    wfinfo::g_winInet.InternetReadFile = [](HINTERNET, LPVOID buffer, DWORD room, LPDWORD got) -> BOOL {
      SetLastError(g_web->read_error);
      if (g_web->read_error != 0) return FALSE;
      const auto left = static_cast<DWORD>(g_web->current.size() - g_web->at);
      *got = std::min({room, left, g_web->largest_read});
      std::copy_n(g_web->current.data() + g_web->at, *got, static_cast<char*>(buffer));
      g_web->at += *got;
      return TRUE;
    };
    wfinfo::g_winInet.InternetCloseHandle = [](HINTERNET) -> BOOL {
      --g_web->open;
      return TRUE;
    };
  }
  ~FakeWeb() { wfinfo::g_winInet = saved_; }
  Web web;

 private:
  wfinfo::WinInetBinding saved_;
};

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
  EXPECT_EQ(fake.web.agent, "TamarinMail CRL retriever");
  EXPECT_EQ(fake.web.flags, 0x000C0200u);
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
  const HMODULE module = wfinfo::g_winInetModule;
  wfinfo::g_winInetModule = wfinfo::kWinInetFailed;
  EXPECT_EQ(DownloadCrl("http://x/l", &size, error), nullptr);
  EXPECT_STREQ(error, "WININET.DLL load failed.");
  wfinfo::g_winInetModule = module;
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
  // The label is shorter than the distance: the address is read as "@x", nobody has it, and a second pass
  // follows.
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
