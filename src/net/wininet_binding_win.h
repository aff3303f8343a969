// WinINet, bound at run time.
#pragma once

#include <windows.h>
// wininet.h needs windows.h first.
#include <wininet.h>

#include <atomic>

namespace wfinfo {

// The functions that are used, in the order in which they are bound. One that the library lacks is null.
struct WinInetBinding {
  HMODULE module;  // held for the life of the process
  decltype(&::InternetOpenA) InternetOpenA;
  decltype(&::InternetCloseHandle) InternetCloseHandle;
  decltype(&::InternetOpenUrlA) InternetOpenUrlA;
  decltype(&::InternetReadFile) InternetReadFile;
  decltype(&::InternetReadFileExA) InternetReadFileExA;
  decltype(&::InternetGetLastResponseInfoA) InternetGetLastResponseInfoA;
  decltype(&::HttpQueryInfoA) HttpQueryInfoA;
};

// Its address stands for WinINet after a failed load, which is never tried again.
inline constexpr WinInetBinding kNoWinInet{};

// Null before the first try; then a table that is whole, or kNoWinInet.
extern std::atomic<const WinInetBinding*> g_winInet;

// Binds WinINet on the first call. False when it cannot be loaded.
bool EnsureWinInet();

// The functions. Only after EnsureWinInet has answered true.
inline const WinInetBinding& WinInet() { return *g_winInet.load(std::memory_order_acquire); }

}  // namespace wfinfo
