#include "src/net/winsock_binding_win.h"

#include "src/bridge/module_win.h"

namespace wfinfo {

std::atomic<const WinSockBinding*> g_winSock = nullptr;

namespace {

std::atomic<bool> g_winSockStarted = false;

WinSockBinding Bind(HMODULE module) {
  WinSockBinding bound{};
  bound.module = module;
#define WFINFO_SLOT(name) \
  ProcSlot { reinterpret_cast<void**>(&bound.name), #name }
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
  return bound;
}

const WinSockBinding* LoadAndBind() {
  const HMODULE module = LoadSystemLibrary("WSOCK32.DLL");
  return module != nullptr ? PublishFirst(g_winSock, Bind(module)) : nullptr;
}

}  // namespace

bool EnsureWinSock() {
  if (g_winSockStarted.load(std::memory_order_acquire)) return true;
  const WinSockBinding* bound = g_winSock.load(std::memory_order_acquire);
  if (bound == nullptr) bound = LoadAndBind();
  if (bound == nullptr) return false;
  WSADATA data;
  const int result = bound->WSAStartup(0x0002, &data);  // version 2.0
  // A WinSock that knows version 1.1 only is started too, and yet is no success.
  if (result == WSAVERNOTSUPPORTED) bound->WSAStartup(0x0101, &data);
  if (result != 0) return false;
  g_winSockStarted.store(true, std::memory_order_release);
  return true;
}

}  // namespace wfinfo
