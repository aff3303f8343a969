// A WinINet for tests of the revocation check: pages by address, or errors.
#pragma once

#include <windows.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "src/net/wininet_binding_win.h"

namespace wfinfo_test {

struct Web {
  std::map<std::string, std::string> pages;
  std::vector<std::string> asked;
  std::string agent;
  std::string headers;
  DWORD headers_size = 0;
  DWORD flags = 0;
  int open = 0;
  bool open_fails = false;
  DWORD url_error = 0;
  DWORD read_error = 0;
  DWORD largest_read = 0xFFFFFFFF;
  std::string current;
  std::size_t at = 0;
};
inline Web* g_web = nullptr;

// In the place of WinINet while it lives.
class FakeWeb {
 public:
  FakeWeb() {
    wfinfo::EnsureWinInet();
    saved_ = wfinfo::g_winInet;
    fake_ = *saved_;
    g_web = &web;
    fake_.InternetOpenA = [](LPCSTR agent, DWORD, LPCSTR, LPCSTR, DWORD) -> HINTERNET {
      g_web->agent = agent;
      if (g_web->open_fails) return nullptr;
      ++g_web->open;
      return reinterpret_cast<HINTERNET>(1);
    };
    fake_.InternetOpenUrlA = [](HINTERNET, LPCSTR url, LPCSTR headers, DWORD headers_size, DWORD flags,
                                DWORD_PTR) -> HINTERNET {
      g_web->asked.emplace_back(url);
      g_web->headers = headers;
      g_web->headers_size = headers_size;
      g_web->flags = flags;
      SetLastError(g_web->url_error);
      if (g_web->url_error != 0) return nullptr;
      g_web->current = g_web->pages[url];
      g_web->at = 0;
      ++g_web->open;
      return reinterpret_cast<HINTERNET>(2);
    };
    fake_.InternetReadFile = [](HINTERNET, LPVOID buffer, DWORD room, LPDWORD got) -> BOOL {
      SetLastError(g_web->read_error);
      if (g_web->read_error != 0) return FALSE;
      const auto left = static_cast<DWORD>(g_web->current.size() - g_web->at);
      *got = std::min({room, left, g_web->largest_read});
      std::copy_n(g_web->current.data() + g_web->at, *got, static_cast<char*>(buffer));
      g_web->at += *got;
      return TRUE;
    };
    fake_.InternetCloseHandle = [](HINTERNET) -> BOOL {
      --g_web->open;
      return TRUE;
    };
    wfinfo::g_winInet = &fake_;
  }
  ~FakeWeb() { wfinfo::g_winInet = saved_; }
  Web web;

 private:
  const wfinfo::WinInetBinding* saved_;
  wfinfo::WinInetBinding fake_;
};

}  // namespace wfinfo_test
