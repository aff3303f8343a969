#include "net/winsock_binding_win.h"

#include "bridge/module_win.h"

namespace wfinfo {

WinSockBinding g_winSock{};

namespace {

HMODULE g_winSockModule = nullptr;  // null until started

void Bind(HMODULE module) {
#define WFINFO_SLOT(name) \
  ProcSlot { reinterpret_cast<void**>(&g_winSock.name), #name }
  const ProcSlot table[] = {
      WFINFO_SLOT(send),           WFINFO_SLOT(recv),
      WFINFO_SLOT(shutdown),       WFINFO_SLOT(closesocket),
      WFINFO_SLOT(socket),         WFINFO_SLOT(connect),
      WFINFO_SLOT(inet_addr),      WFINFO_SLOT(htons),
      WFINFO_SLOT(ntohl),          WFINFO_SLOT(gethostbyname),
      WFINFO_SLOT(gethostbyaddr),  WFINFO_SLOT(WSAStartup),
      WFINFO_SLOT(WSACleanup),     WFINFO_SLOT(WSAGetLastError),
      WFINFO_SLOT(ioctlsocket),    WFINFO_SLOT(setsockopt),
      WFINFO_SLOT(WSAAsyncSelect), ProcSlot{nullptr, nullptr},
  };
#undef WFINFO_SLOT
  BindProcTable(module, table);
}

}  // namespace

bool EnsureWinSock() {
  if (g_winSockModule != nullptr) return true;
  const HMODULE module = LoadSystemLibrary("WSOCK32.DLL");
  if (module == nullptr) return false;
  Bind(module);
  WSADATA data;
  const int result = g_winSock.WSAStartup(0x0002, &data);  // version 2.0
  // The fall back to version 1.1 is not taken as a success, on purpose.
  if (result == WSAVERNOTSUPPORTED) g_winSock.WSAStartup(0x0101, &data);
  if (result != 0) return false;
  g_winSockModule = module;
  return true;
}

}  // namespace wfinfo
