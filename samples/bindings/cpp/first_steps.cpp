// The library in C++ (docs/bindings.md):
//   x86_64-w64-mingw32-g++ -std=c++17 -static first_steps.cpp libWFINFO.dll.a -o first_steps.exe
#include <cstdio>

#include "wfinfo.hpp"

int main() {
  // Errors to standard error: a box would wait for somebody to close it.
  wfinfo::report_errors_to(
      [](const char* text) { std::fprintf(stderr, "%s\n", wfinfo::from_host(text).c_str()); });
  std::printf("interface %d\n", wfinfo::GetWFInfoVersion(nullptr));
  std::printf("%s\n", wfinfo::ToUpper("caf\xC3\xA9 \xE2\x98\x95 \xE6\xBC\xA2\xE5\xAD\x97").c_str());
  std::printf("%s\n", wfinfo::FormatDate("Mon, 2 Jun 2025 09:00:00 +0900", "YYYY/MM/DD").c_str());
  // Two results in one call are no matter: each is copied.
  const char* list = "Alice <alice@example.com>, \"Bob, B.\" <bob@example.com>";
  std::printf("%s; %s\n", wfinfo::GetEmailList(list, 0).c_str(), wfinfo::GetEmailList(list, 1).c_str());
  wfinfo::ToUpper(nullptr);
  return 0;
}
