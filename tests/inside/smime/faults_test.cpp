// Every operation of the family with each of its allocations made to fail, and without each entry of crypt32:
// nothing crashes, nothing stays behind, and no failure passes for a success.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "resources/resource_ids.h"
#include "src/bridge/security_state_win.h"
#include "src/smime/cert_match_win.h"
#include "src/smime/crl_download_win.h"
#include "src/smime/smime_engine_win.h"
#include "tests/inside/smime/fake_web.h"
#include "tests/inside/smime/support.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::smime;

// Where this program keeps the address of a function of kernel32 that it imports.
void** ImportSlot(const char* function) {
  auto* const base = reinterpret_cast<BYTE*>(GetModuleHandleA(nullptr));
  const auto* const headers =
      reinterpret_cast<const IMAGE_NT_HEADERS*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
  for (; library->Name != 0; ++library) {
    auto* name = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
    auto* address = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++address) {
      if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
      const auto* const entry = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
      if (std::strcmp(reinterpret_cast<const char*>(entry->Name), function) == 0)
        return reinterpret_cast<void**>(&address->u1.Function);
    }
  }
  return nullptr;
}

// While alive, this thread's allocation number `failing` (from 1) fails; all are counted.
class FailingAllocation {
 public:
  explicit FailingAllocation(int failing) : failing_(failing), thread_(GetCurrentThreadId()) {
    current_ = this;
    Replace("LocalAlloc", reinterpret_cast<void*>(&Allocate));
    Replace("LocalReAlloc", reinterpret_cast<void*>(&Reallocate));
  }
  ~FailingAllocation() {
    Replace("LocalAlloc", reinterpret_cast<void*>(&LocalAllocReal));
    Replace("LocalReAlloc", reinterpret_cast<void*>(&LocalReAllocReal));
    current_ = nullptr;
  }
  FailingAllocation(const FailingAllocation&) = delete;
  bool has_failed() const { return count_ >= failing_; }

 private:
  static void Replace(const char* function, void* by) {
    void** const slot = ImportSlot(function);
    ASSERT_NE(slot, nullptr) << function;
    DWORD before = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
    *slot = by;
    VirtualProtect(slot, sizeof *slot, before, &before);
  }
  template <class Function>
  static Function* Real(const char* name) {
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), name)));
  }
  static HLOCAL WINAPI LocalAllocReal(UINT flags, SIZE_T size) {
    return Real<decltype(::LocalAlloc)>("LocalAlloc")(flags, size);
  }
  static HLOCAL WINAPI LocalReAllocReal(HLOCAL block, SIZE_T size, UINT flags) {
    return Real<decltype(::LocalReAlloc)>("LocalReAlloc")(block, size, flags);
  }
  static bool Fails() {
    if (GetCurrentThreadId() != current_->thread_ || ++current_->count_ != current_->failing_) return false;
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return true;
  }
  static HLOCAL WINAPI Allocate(UINT flags, SIZE_T size) {
    return Fails() ? nullptr : LocalAllocReal(flags, size);
  }
  static HLOCAL WINAPI Reallocate(HLOCAL block, SIZE_T size, UINT flags) {
    return Fails() ? nullptr : LocalReAllocReal(block, size, flags);
  }

  static FailingAllocation* current_;
  const int failing_;
  const DWORD thread_;
  int count_ = 0;
};
FailingAllocation* FailingAllocation::current_ = nullptr;

// What the replaced entries of CryptoAPI make and read.
constexpr char kMade[] = "made";
PCCERT_CONTEXT g_messageSigner = nullptr;

BOOL Give(BYTE* out, DWORD* size) {
  if (size == nullptr) return TRUE;
  *size = sizeof kMade - 1;
  if (out != nullptr) std::copy_n(kMade, *size, out);
  return TRUE;
}
BOOL WINAPI Encrypt(PCRYPT_ENCRYPT_MESSAGE_PARA, DWORD, PCCERT_CONTEXT*, const BYTE*, DWORD, BYTE* out,
                    DWORD* size) {
  return Give(out, size);
}
BOOL WINAPI Sign(PCRYPT_SIGN_MESSAGE_PARA, BOOL, DWORD, const BYTE**, DWORD*, BYTE* out, DWORD* size) {
  return Give(out, size);
}
BOOL WINAPI SignAndEncrypt(PCRYPT_SIGN_MESSAGE_PARA, PCRYPT_ENCRYPT_MESSAGE_PARA, DWORD, PCCERT_CONTEXT*,
                           const BYTE*, DWORD, BYTE* out, DWORD* size) {
  return Give(out, size);
}
BOOL WINAPI Decrypt(PCRYPT_DECRYPT_MESSAGE_PARA, const BYTE*, DWORD, BYTE* out, DWORD* size,
                    PCCERT_CONTEXT*) {
  return Give(out, size);
}
BOOL WINAPI Verify(PCRYPT_VERIFY_MESSAGE_PARA, DWORD index, const BYTE*, DWORD, BYTE* out, DWORD* size,
                   PCCERT_CONTEXT* signer) {
  if (index > 0) return SetLastError(0x8009200E), FALSE;
  // Through the table, so that it is counted as what the library took.
  if (signer != nullptr) *signer = g_crypto.CertDuplicateCertificateContext(g_messageSigner);
  return Give(out, size);
}
BOOL WINAPI Show(DWORD, const void*, HWND, LPCWSTR, DWORD, void*) { return TRUE; }

class SmimeFaults : public testing::Test {
 protected:
  void SetUp() override {
    Replace("CryptEncryptMessage", &Encrypt);
    Replace("CryptSignMessage", &Sign);
    Replace("CryptSignAndEncryptMessage", &SignAndEncrypt);
    Replace("CryptDecryptMessage", &Decrypt);
    Replace("CryptVerifyMessageSignature", &Verify);
    Replace("CryptUIDlgViewContext", &Show);
    Replace("CertGetCertificateChain", &GoodChain);
    Replace("CertFreeCertificateChain", &CertFreeCertificateChain);
    // A list that is not kept is downloaded each time.
    Replace(
        "CertAddCRLContextToStore",
        +[](HCERTSTORE, PCCRL_CONTEXT, DWORD, PCCRL_CONTEXT*) -> BOOL { return FALSE; });
    me_ = Issue("me@x");
    you_ = Issue("you@x");
    crypto_.Store("My").Add(me_);
    crypto_.Store("AddressBook").Add(you_);
    crypto_.Store("CA");
    carried_.Add(me_);
    carried_.Add(root_.cert());
    g_messageSigner = me_;
    fake_.web.pages["http://x/list"] = root_.Revoke({}) + std::string(0x20000, '\0');  // grows once
    control_ = CreateWindowExA(0, "EDIT", "", WS_CHILD | ES_MULTILINE | ES_AUTOVSCROLL | ES_AUTOHSCROLL, 0, 0,
                               100, 100, host_.frame(), nullptr, GetModuleHandleA(nullptr), nullptr);
    SendMessageA(control_, EM_LIMITTEXT, 0, 0);
    host_.Expect(216).Any().Any().Always().Answer(5);
    host_.Expect(313).Any().Always().Answer(0);  // the text goes as it is then
  }
  void TearDown() override {
    host_.TakeMessages();
    DestroyWindow(control_);
    CertFreeCertificateContext(me_);
    CertFreeCertificateContext(you_);
  }
  template <class Function>
  void Replace(const char* name, Function* by) {
    crypto_.replaced[name] = reinterpret_cast<void*>(by);
  }
  PCCERT_CONTEXT Issue(const std::string& email) {
    return root_.Issue(
        {.name = email, .emails = {email}, .alt_emails = {"alias@x"}, .crl_urls = {"http://x/list"}});
  }

  struct Operation {
    const char* name;
    std::function<std::string()> run;
    // What it may give: the first when nothing fails.
    std::vector<std::string> results;
  };
  std::vector<Operation> Operations() {
    const auto revoke = [this] {
      SetWindowTextA(control_, "");
      return std::to_string(SMIMEVerifyRevocation(carried_.get(), control_));
    };
    return {
        {"encrypt", [] { return SmimeEncryptSign(0, "t", "you@x me@x", nullptr, 6, 0, 0); }, {kMade, ""}},
        {"sign", [] { return SmimeEncryptSign(1, "t", nullptr, "me@x", 6, 0, 0); }, {kMade, ""}},
        {"both", [] { return SmimeEncryptSign(2, "t", "you@x", "me@x", 6, 0, 0); }, {kMade, ""}},
        {"decrypt", [] { return SMIMEDecrypt("m", 1, nullptr); }, {kMade, ""}},
        {"verify", [] { return SMIMEVerify("m", 1, nullptr, 0, "other@x", nullptr); }, {kMade, "OK"}},
        {"revoke", revoke, {"1", "0"}},
        {"import",
         [this] { return std::to_string(SMIMEAddCertificate(carried_.get(), 1, nullptr)); },
         {"1", "0"}},
        {"encoded",
         [this] {
           return std::to_string(SMIMEAddEncodedCertificate(you_->pbCertEncoded, you_->cbCertEncoded));
         },
         {"2", "1", "0"}},
        {"choose", [] { return std::to_string(SelectCertCrcDialog("me@x")); }, {"5", "0"}},
        {"show",
         [this] { return std::to_string(SMIMEShowCertificate(carried_.get(), nullptr)); },
         {"1", "0"}},
        {"report",
         [this] { return std::string(SMIMEVerifyCertificate(me_, carried_.get())).substr(0, 2); },
         {"\x81\x9B", "\x81\x7E", ""}},
        {"hand over", [] { return std::to_string(FreeCertificate(RetrieveCertificate())); }, {"0", "1"}},
    };
  }

  ScriptedHost host_;
  CountedCrypto crypto_;
  FakeWeb fake_;
  Authority root_{"Root"};
  MemoryStore carried_;
  PCCERT_CONTEXT me_ = nullptr;
  PCCERT_CONTEXT you_ = nullptr;
  HWND control_ = nullptr;
};

TEST_F(SmimeFaults, WithoutMemoryEachOperationFailsCleanly) {
  BoxCloser boxes;
  DialogDriver chooser(IDC_CERT_CHOICE_LIST, IDOK);
  int failures = 0;
  for (const Operation& operation : Operations()) {
    SCOPED_TRACE(operation.name);
    operation.run();  // what is kept between operations is there from now on
    EXPECT_EQ(operation.run(), operation.results[0]);
    const int stores = crypto_.open_stores();
    for (int failing = 1; failing < 100; ++failing) {
      SCOPED_TRACE(failing);
      std::string result;
      {
        const FailingAllocation allocation(failing);
        result = operation.run();
        if (!allocation.has_failed()) break;
      }
      ++failures;
      EXPECT_NE(std::find(operation.results.begin(), operation.results.end(), result),
                operation.results.end())
          << result;
      if (result.empty()) {
        EXPECT_EQ(PgpGetSMIMEOutputSize(), 0u);
      }
      crypto_.ExpectBalance(0, stores);
    }
    EXPECT_EQ(operation.run(), operation.results[0]) << "all is well again";
  }
  EXPECT_GE(failures, 19) << "each kind of block was refused once";
}

TEST_F(SmimeFaults, AGoodSignatureWithoutAReportIsNotCalledGood) {
  bool report_was_lost = false;
  for (int failing = 1; failing < 20; ++failing) {
    const FailingAllocation allocation(failing);
    SMIMEVerify("m", 1, nullptr, 0, "me@x", nullptr);
    EXPECT_EQ(wfinfo::g_signatureState == 1, wfinfo::HasPgpInfoText() && PgpGetSMIMEOutputSize() != 0);
    report_was_lost = report_was_lost || !wfinfo::HasPgpInfoText();
  }
  EXPECT_TRUE(report_was_lost);
}

// While alive, looks into each block that this program frees.
class WatchedFree {
 public:
  WatchedFree() {
    found_ = 0;
    freed_ = 0;
    Replace(reinterpret_cast<void*>(&Free));
  }
  ~WatchedFree() { Replace(reinterpret_cast<void*>(&Real)); }
  WatchedFree(const WatchedFree&) = delete;
  int found() const { return found_; }
  int freed() const { return freed_; }

 private:
  static void Replace(void* by) {
    void** const slot = ImportSlot("LocalFree");
    ASSERT_NE(slot, nullptr);
    DWORD before = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
    *slot = by;
    VirtualProtect(slot, sizeof *slot, before, &before);
  }
  static HLOCAL WINAPI Real(HLOCAL block) {
    return reinterpret_cast<decltype(&::LocalFree)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "LocalFree")))(block);
  }
  static HLOCAL WINAPI Free(HLOCAL block) {
    if (block != nullptr) {
      ++freed_;
      const std::string bytes(static_cast<const char*>(block), LocalSize(block));
      if (bytes.find(kMade) != std::string::npos) ++found_;
    }
    return Real(block);
  }
  static int found_;
  static int freed_;
};
int WatchedFree::found_ = 0;
int WatchedFree::freed_ = 0;

// Hands the text out, and says then that it could not be made.
BOOL WINAPI DecryptHalf(PCRYPT_DECRYPT_MESSAGE_PARA, const BYTE*, DWORD, BYTE* out, DWORD* size,
                        PCCERT_CONTEXT*) {
  Give(out, size);
  return out == nullptr ? TRUE : (SetLastError(1), FALSE);
}
BOOL WINAPI VerifyHalf(PCRYPT_VERIFY_MESSAGE_PARA, DWORD index, const BYTE*, DWORD, BYTE* out, DWORD* size,
                       PCCERT_CONTEXT* signer) {
  if (signer != nullptr) *signer = nullptr;
  if (index > 0) return SetLastError(0x80090006), FALSE;  // the second signature is bad
  return Give(out, size);
}
BOOL WINAPI OpenNothing(PCRYPT_DECRYPT_MESSAGE_PARA, PCRYPT_VERIFY_MESSAGE_PARA, DWORD, const BYTE*, DWORD,
                        BYTE*, DWORD* size, PCCERT_CONTEXT*, PCCERT_CONTEXT*) {
  if (size != nullptr) *size = 0;
  return TRUE;
}

TEST_F(SmimeFaults, ClearTextIsWipedBeforeItIsFreed) {
  const auto freed_with_text = [](const std::function<void()>& act) {
    const WatchedFree watched;
    act();
    EXPECT_GT(watched.freed(), 0);
    return watched.found();
  };
  BoxCloser boxes;
  const auto decrypt = [] { SMIMEDecrypt("m", 1, nullptr); };
  const auto verify = [] { SMIMEVerify("m", 1, nullptr, 0, nullptr, nullptr); };
  EXPECT_STREQ(SMIMEDecrypt("m", 1, nullptr), kMade);
  EXPECT_EQ(freed_with_text(decrypt), 0) << "the result before";
  EXPECT_EQ(freed_with_text(verify), 0) << "the result before a verification";
  Replace("CryptVerifyMessageSignature", &VerifyHalf);
  EXPECT_EQ(freed_with_text(verify), 0) << "content that a later signature does not hold for";
  Replace("CryptDecryptMessage", &DecryptHalf);
  EXPECT_EQ(freed_with_text(decrypt), 0) << "a decryption that fails at its end";
  Replace("CryptDecryptMessage", &Decrypt);
  Replace("CryptDecryptAndVerifyMessageSignature", &OpenNothing);
  CRYPT_DECRYPT_MESSAGE_PARA para{};
  EXPECT_EQ(freed_with_text([&para] { SMIMEVerify("m", 1, nullptr, 0, nullptr, &para); }), 0)
      << "what an envelope held";
}

TEST_F(SmimeFaults, ADownloadWithoutMemorySaysHowMuchItWanted) {
  fake_.web.pages["http://x/list"] = std::string(0x20000, 'x');
  const struct {
    int failing;
    const char* line;
  } cases[] = {
      {1, "Not enough memory. error code=8, size=131072Bytes"},
      {2, "Not enough memory. error code=8, size=262144Bytes"},
      {3, "Not enough memory. error code=8, size=131088Bytes"},
  };
  for (const auto& test : cases) {
    DWORD size = 9;
    char error[kDownloadErrorRoom];
    const FailingAllocation allocation(test.failing);
    EXPECT_EQ(DownloadCrl("http://x/list", &size, error), nullptr);
    EXPECT_STREQ(error, test.line);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(fake_.web.open, 0) << "both handles are closed";
  }
}

TEST_F(SmimeFaults, WithoutAnyOneEntryNothingCrashes) {
  BoxCloser boxes;
  DialogDriver chooser(IDC_CERT_CHOICE_LIST, IDOK);
  std::vector<std::string> names;
#define NAME(name) names.emplace_back(#name);
  WFINFO_CRYPT32_ENTRIES(NAME)
#undef NAME
  ASSERT_EQ(names.size(), 36u);
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    crypto_.missing_entries = {name};
    EXPECT_TRUE(LoadCryptoLibrary()) << "what does not need it still works";
    for (const Operation& operation : Operations()) {
      SCOPED_TRACE(operation.name);
      const std::string result = operation.run();
      EXPECT_NE(std::find(operation.results.begin(), operation.results.end(), result),
                operation.results.end())
          << result;
    }
    char list[64];
    GetCertEmailList(me_, list, sizeof list);
    SMIMEVerify("m", 1, "m", 1, nullptr, nullptr);
    SMIMEVerifyRevocation_Cert(me_, carried_.get(), control_);
    SMIMEVerifyCertificateByWinVerifyTrust(0, carried_.get());
  }
}

TEST_F(SmimeFaults, AMissingEntryFailsAsItsFunctionWould) {
  BoxCloser boxes;
  crypto_.missing_entries = {"CryptSignMessage"};
  EXPECT_STREQ(SmimeEncryptSign(1, "t", nullptr, "me@x", 6, 0, 0), "");
  ASSERT_EQ(boxes.boxes().size(), 1u);
  EXPECT_EQ(boxes.boxes()[0].text,
            "Error occurred in S/MIME: CryptSignMessage failed, \nerror code=0x0000007F");
  EXPECT_STREQ(SmimeEncryptSign(0, "t", "you@x", nullptr, 6, 0, 0), kMade) << "this one does without it";
  crypto_.missing_entries = {"CryptVerifyMessageSignature"};
  EXPECT_STREQ(SMIMEVerify("m", 1, nullptr, 0, nullptr, nullptr), "OK");
  EXPECT_EQ(wfinfo::g_signatureState, 0);
  EXPECT_NE(std::string(wfinfo::PgpInfoText()).find("error code = 0x0000007F"), std::string::npos);
  crypto_.missing_entries = {"CertVerifyTimeValidity"};
  EXPECT_STREQ(SmimeEncryptSign(1, "t", nullptr, "me@x", 6, 0, 0), "") << "not known to be valid";
  ASSERT_EQ(boxes.boxes().size(), 2u);
  EXPECT_NE(boxes.boxes()[1].text.find("The certificate for signing has a problem."), std::string::npos);
}

}  // namespace
}  // namespace wfinfo_test
