#include "src/net/wininet_binding_win.h"

#include "src/bridge/module_win.h"

namespace wfinfo {

std::atomic<const WinInetBinding*> g_winInet = nullptr;

namespace {

WinInetBinding Bind(HMODULE module) {
  WinInetBinding bound{};
  bound.module = module;
#define WFINFO_SLOT(name) \
  ProcSlot { reinterpret_cast<void**>(&bound.name), #name }
  const ProcSlot table[] = {
      WFINFO_SLOT(InternetOpenA),       WFINFO_SLOT(InternetCloseHandle),
      WFINFO_SLOT(InternetOpenUrlA),    WFINFO_SLOT(InternetReadFile),
      WFINFO_SLOT(InternetReadFileExA), WFINFO_SLOT(InternetGetLastResponseInfoA),
      WFINFO_SLOT(HttpQueryInfoA),      ProcSlot{nullptr, nullptr},
  };
#undef WFINFO_SLOT
  BindProcTable(module, table);
  return bound;
}

const WinInetBinding* LoadAndBind() {
  const HMODULE module = LoadSystemLibrary("WININET.DLL");
  if (module != nullptr) return PublishFirst(g_winInet, Bind(module));
  // Unless another thread was luckier meanwhile.
  const WinInetBinding* first = nullptr;
  return g_winInet.compare_exchange_strong(first, &kNoWinInet) ? &kNoWinInet : first;
}

}  // namespace

bool EnsureWinInet() {
  const WinInetBinding* bound = g_winInet.load(std::memory_order_acquire);
  if (bound == nullptr) bound = LoadAndBind();
  return bound != nullptr && bound != &kNoWinInet;
}

}  // namespace wfinfo
