#include "src/smime/crypto_binding_win.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <iterator>
#include <string_view>

#include "src/base/fatal.h"
#include "src/bridge/debug_log_win.h"
#include "src/bridge/host_protocol.h"
#include "src/bridge/host_window_win.h"
#include "src/bridge/module_win.h"

namespace wfinfo::smime {

CryptoBinding g_crypto{};

namespace {

constexpr UINT kFolderRoom = 244;        // bytes of the system folder's name
constexpr std::size_t kBoxLimit = 1023;  // an error text must stay below
constexpr std::size_t kLineRoom = 1025;  // what wvsprintfA writes at most, terminator included

HMODULE LoadModule(const char* path) { return LoadLibraryA(path); }
void* FindEntry(HMODULE module, const char* name) { return ProcOf<void*>(module, name); }

// Takes the place of CryptUIDlgViewContext where cryptui has only the newer viewer.
BOOL WINAPI ViewCertificate(DWORD, const void* context, HWND parent, LPCWSTR title, DWORD, void*) {
  CRYPTUI_VIEWCERTIFICATE_STRUCTW view{};
  view.dwSize = sizeof view;
  view.hwndParent = parent;
  view.szTitle = title;
  view.pCertContext = static_cast<PCCERT_CONTEXT>(context);
  return g_crypto.CryptUIDlgViewCertificateW(&view, nullptr);
}

// Entries whose absence their users look for: these stay null when crypt32 lacks them.
constexpr std::string_view kOptional[] = {"CertGetCertificateChain", "CertFreeCertificateChain",
                                          "CertVerifyCRLRevocation"};
// Entries whose 0 means that all is well; what they judge counts as too old without them.
constexpr std::string_view kZeroIsGood[] = {"CertVerifyTimeValidity", "CertVerifyCRLTimeValidity"};

// These stand in for an entry that crypt32 lacks, and fail as the entry would. One function serves all: the
// caller of a 64-bit function clears the arguments away, and every result comes in the same register.
INT_PTR FailingEntry() {
  SetLastError(ERROR_PROC_NOT_FOUND);
  return 0;
}
INT_PTR FailingCheck() {
  SetLastError(ERROR_PROC_NOT_FOUND);
  return 1;
}

template <std::size_t kCount>
bool Holds(const std::string_view (&names)[kCount], std::string_view name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

void* StandInFor(const char* name) {
  if (Holds(kOptional, name)) return nullptr;
  return reinterpret_cast<void*>(Holds(kZeroIsGood, name) ? &FailingCheck : &FailingEntry);
}

// Threads may bind at the same time, each before its own first use, and find the same entries: a slot that
// holds one must never be anything else meanwhile. So what it is to hold is made up first and stored once.
template <class Function>
void Keep(Function* slot, Function entry) {
  std::atomic_ref(*slot).store(entry, std::memory_order_relaxed);
}

template <class Function>
Function Find(HMODULE module, const char* name, Function*) {
  return reinterpret_cast<Function>(g_cryptoLoader.entry(module, name));
}

// Loads a module at the first use. Of two threads that do, the second gives its reference back.
HMODULE Hold(HMODULE* slot, const char* name) {
  const std::atomic_ref<HMODULE> held(*slot);
  HMODULE first = held.load(std::memory_order_acquire);
  if (first != nullptr) return first;
  const HMODULE mine = LoadFromSystemFolder(name);
  if (mine == nullptr || held.compare_exchange_strong(first, mine)) return mine;
  FreeLibrary(mine);
  return first;
}

void TakeViewers() {
  const HMODULE module = Hold(&g_crypto.cryptui, "cryptui.dll");
  if (module == nullptr) return;
  auto view = Find(module, "CryptUIDlgViewContext", &g_crypto.CryptUIDlgViewContext);
  const auto newer = Find(module, "CryptUIDlgViewCertificateW", &g_crypto.CryptUIDlgViewCertificateW);
  Keep(&g_crypto.CryptUIDlgViewCertificateW, newer);
  if (view == nullptr && newer != nullptr) view = &ViewCertificate;
  Keep(&g_crypto.CryptUIDlgViewContext, view);
}

}  // namespace

CryptoLoader g_cryptoLoader = {&LoadModule, &FindEntry};

HMODULE LoadFromSystemFolder(const char* name) {
  char path[kFolderRoom + 32];
  const UINT length = GetSystemDirectoryA(path, kFolderRoom);
  if (length == 0 || length >= kFolderRoom) return nullptr;
  path[length] = '\\';
  lstrcpynA(path + length + 1, name, static_cast<int>(sizeof path - length - 1));
  return g_cryptoLoader.load(path);
}

bool LoadCryptoLibrary() {
  const HMODULE crypt32 = Hold(&g_crypto.crypt32, "crypt32.dll");
  if (crypt32 == nullptr) {
    ShowSmimeError(
        {"Failed to load crypt32.dll or version too old. So you cannot use S/MIME functions.\n"
         "（Maybe Windows or Internet Explorer is too old)",
         "crypt32.dllがロードできないか、またはバージョンが古いです。S/MIMEは使えません。\n"
         "（WindowsまたはInternet Explorerが古いとダメです）"});
    return false;
  }
#define WFINFO_TAKE(name)                                                               \
  if (auto entry = Find(crypt32, #name, &g_crypto.name); true) {                        \
    if (entry == nullptr) entry = reinterpret_cast<decltype(entry)>(StandInFor(#name)); \
    Keep(&g_crypto.name, entry);                                                        \
  }
  WFINFO_CRYPT32_ENTRIES(WFINFO_TAKE)
#undef WFINFO_TAKE
  TakeViewers();
  return true;
}

void ShowSmimeBox(const char* text) {
  WriteDebugLog(text, kLogGeneral);
  MessageBoxA(MessageBoxOwner(), text, nullptr, MB_ICONHAND);
}

void ShowSmimeError(const char* what) {
  const DWORD error = GetLastError();
  const char* const format = Chosen(
      {"Error occurred in S/MIME: %s, \nerror code=0x%08X", "S/MIMEでのエラー: %s, \nエラーコード=0x%08X"});
  // Eight digits replace the six characters of the two placeholders.
  if (std::strlen(format) + std::strlen(what) + 2 >= kBoxLimit) StopProcess();
  char text[kLineRoom];
  wsprintfA(text, format, what, error);
  ShowSmimeBox(text);
}

void LogLine(const char* format, ...) {
  char text[kLineRoom];
  va_list arguments;
  va_start(arguments, format);
  wvsprintfA(text, format, arguments);
  va_end(arguments);
  text[kLineRoom - 1] = '\0';
  WriteDebugLog(text, kLogGeneral);
}

UniqueChain BuildChain(PCCERT_CONTEXT cert, HCERTSTORE further) {
  if (g_crypto.CertGetCertificateChain == nullptr || g_crypto.CertFreeCertificateChain == nullptr) return {};
  CERT_CHAIN_PARA usage{};
  usage.cbSize = sizeof usage;
  PCCERT_CHAIN_CONTEXT chain = nullptr;
  if (!g_crypto.CertGetCertificateChain(nullptr, cert, nullptr, further, &usage, 0, nullptr, &chain))
    return {};
  return UniqueChain(chain);
}

const CERT_SIMPLE_CHAIN* FirstChain(const UniqueChain& chain) {
  if (!chain || chain.get()->cChain == 0) return nullptr;
  return chain.get()->rgpChain[0];
}

}  // namespace wfinfo::smime
