#include "net/wininet_binding_win.h"

#include "bridge/module_win.h"

namespace wfinfo {

WinInetBinding g_winInet{};
HMODULE g_winInetModule = nullptr;

namespace {

void Bind() {
#define WFINFO_SLOT(name) \
  ProcSlot { reinterpret_cast<void**>(&g_winInet.name), #name }
  const ProcSlot table[] = {
      WFINFO_SLOT(InternetOpenA),       WFINFO_SLOT(InternetCloseHandle),
      WFINFO_SLOT(InternetOpenUrlA),    WFINFO_SLOT(InternetReadFile),
      WFINFO_SLOT(InternetReadFileExA), WFINFO_SLOT(InternetGetLastResponseInfoA),
      WFINFO_SLOT(HttpQueryInfoA),      ProcSlot{nullptr, nullptr},
  };
#undef WFINFO_SLOT
  BindProcTable(g_winInetModule, table);
}

}  // namespace

bool EnsureWinInet() {
  if (g_winInetModule == kWinInetFailed) return false;
  if (g_winInetModule != nullptr) return true;
  g_winInetModule = LoadSystemLibrary("WININET.DLL");
  if (g_winInetModule == nullptr) {
    g_winInetModule = kWinInetFailed;
    return false;
  }
  Bind();
  return true;
}

}  // namespace wfinfo
