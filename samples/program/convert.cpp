// Texts of the library in C++ and back, with wfinfo.hpp (docs/from-your-program.md):
//
//   x86_64-w64-mingw32-g++ -std=c++17 -static convert.cpp libWFINFO.dll.a -o convert.exe
#include <cstdio>

#include "wfinfo.hpp"

int main() {
  const std::string host = wfinfo::to_host("caf\xC3\xA9 \xE6\xBC\xA2\xE5\xAD\x97");
  const std::string utf8 = wfinfo::from_host(host);
  std::printf("%zu bytes of host text: %s\n", host.size(), utf8.c_str());
  return 0;
}
