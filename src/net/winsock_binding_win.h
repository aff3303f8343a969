// WinSock 1.1, bound at run time.
#pragma once

#include <winsock2.h>
// windows.h must not come before winsock2.h.
#include <windows.h>

#include <atomic>

namespace wfinfo {

// The functions that are bound, in order. One that the library lacks is null.
struct WinSockBinding {
  HMODULE module;  // held for the life of the process
  decltype(&::send) send;
  decltype(&::recv) recv;
  decltype(&::shutdown) shutdown;
  decltype(&::closesocket) closesocket;
  decltype(&::socket) socket;
  decltype(&::connect) connect;
  decltype(&::inet_addr) inet_addr;
  decltype(&::htons) htons;
  decltype(&::ntohl) ntohl;
  decltype(&::gethostbyname) gethostbyname;
  decltype(&::gethostbyaddr) gethostbyaddr;
  decltype(&::WSAStartup) WSAStartup;
  decltype(&::WSACleanup) WSACleanup;
  decltype(&::WSAGetLastError) WSAGetLastError;
  decltype(&::ioctlsocket) ioctlsocket;
  decltype(&::setsockopt) setsockopt;
  decltype(&::WSAAsyncSelect) WSAAsyncSelect;
};

// Null until a whole table is bound.
extern std::atomic<const WinSockBinding*> g_winSock;

// Binds and starts WinSock on the first call; false when that fails, and the next call tries again. WinSock
// is never cleaned up.
bool EnsureWinSock();

// The functions. Only after EnsureWinSock has answered true.
inline const WinSockBinding& WinSock() { return *g_winSock.load(std::memory_order_acquire); }

}  // namespace wfinfo
