// WinINet, bound at run time.
#pragma once

#include <windows.h>
// wininet.h needs windows.h first.
#include <wininet.h>

namespace wfinfo {

// The functions that are used, in the order in which they are bound. One that the library lacks is null.
struct WinInetBinding {
  decltype(&::InternetOpenA) InternetOpenA;
  decltype(&::InternetCloseHandle) InternetCloseHandle;
  decltype(&::InternetOpenUrlA) InternetOpenUrlA;
  decltype(&::InternetReadFile) InternetReadFile;
  decltype(&::InternetReadFileExA) InternetReadFileExA;
  decltype(&::InternetGetLastResponseInfoA) InternetGetLastResponseInfoA;
  decltype(&::HttpQueryInfoA) HttpQueryInfoA;
};
extern WinInetBinding g_winInet;

// The module: null before the first try, kWinInetFailed after a failed one (never tried again).
extern HMODULE g_winInetModule;
inline const HMODULE kWinInetFailed = reinterpret_cast<HMODULE>(INT_PTR{-1});

// Binds WinINet on the first call. False when it cannot be loaded.
bool EnsureWinInet();

}  // namespace wfinfo
