// http_cost: milliseconds to read a body of nearly 4 MiB from this machine, through Inet_Read and through
// bare loops of InternetReadFile and InternetReadFileExA into one buffer, in turn; the least of each.
#include <winsock2.h>
// winsock2.h must come before windows.h, and that before wininet.h.
#include <windows.h>
// wininet.h needs windows.h.
#include <wininet.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

extern "C" {
#include "wfinfo.h"
}

namespace {

constexpr std::size_t kBodySize = (std::size_t{4} << 20) - (std::size_t{1} << 16);
constexpr int kRounds = 12;

unsigned g_port;

void Serve(SOCKET listener) {
  const std::string body(kBodySize, 'b');
  const std::string head =
      "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " + std::to_string(kBodySize) + "\r\n\r\n";
  for (int i = 0; i < 3 * kRounds; ++i) {
    const SOCKET peer = accept(listener, nullptr, nullptr);
    char request[4096];
    recv(peer, request, sizeof request, 0);
    send(peer, head.data(), static_cast<int>(head.size()), 0);
    for (std::size_t at = 0; at < body.size();) {
      const int sent = send(peer, body.data() + at, static_cast<int>(body.size() - at), 0);
      if (sent <= 0) break;
      at += static_cast<std::size_t>(sent);
    }
    closesocket(peer);
  }
}

double Now_ms() {
  LARGE_INTEGER counter, frequency;
  QueryPerformanceCounter(&counter);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(counter.QuadPart) * 1e3 / static_cast<double>(frequency.QuadPart);
}

double Ours(const char* url) {
  const double start = Now_ms();
  Inet_OpenUrl(url);
  const char* const text = Inet_Read();
  const double end = Now_ms();
  if (text == nullptr || std::strlen(text) != kBodySize) std::printf("a short body\n");
  return end - start;
}

bool Read(HINTERNET request, char* to, DWORD* read) { return InternetReadFile(request, to, 65536, read); }

bool ReadEx(HINTERNET request, char* to, DWORD* read) {
  INTERNET_BUFFERSA record{};
  record.dwStructSize = sizeof record;
  record.lpvBuffer = to;
  record.dwBufferLength = 65536;
  const bool good = InternetReadFileExA(request, &record, IRF_SYNC, 0);
  *read = record.dwBufferLength;
  return good;
}

double Bare(bool (*read_some)(HINTERNET, char*, DWORD*), HINTERNET internet, const char* url,
            std::vector<char>& buffer) {
  const double start = Now_ms();
  const HINTERNET request = InternetOpenUrlA(internet, url, "", 0, 0x002C0200, 0);
  DWORD used = 0, read = 0;
  while (read_some(request, buffer.data() + used, &read) && read > 0) used += read;
  const double end = Now_ms();
  InternetCloseHandle(request);
  if (used != kBodySize) std::printf("a short body\n");
  return end - start;
}

}  // namespace

int main() {
  WSADATA data;
  WSAStartup(0x0202, &data);
  const SOCKET listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address);
  listen(listener, 8);
  int size = sizeof address;
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
  g_port = ntohs(address.sin_port);
  std::thread server(&Serve, listener);
  const std::string url = "http://127.0.0.1:" + std::to_string(g_port) + "/";
  const HINTERNET internet = InternetOpenA("http_cost", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0);
  std::vector<char> buffer(kBodySize + 65536);
  double ours = 1e300, bare = 1e300, bare_ex = 1e300;
  for (int i = 0; i < kRounds; ++i) {
    const double a = Ours(url.c_str());
    const double b = Bare(&Read, internet, url.c_str(), buffer);
    const double c = Bare(&ReadEx, internet, url.c_str(), buffer);
    ours = a < ours ? a : ours;
    bare = b < bare ? b : bare;
    bare_ex = c < bare_ex ? c : bare_ex;
  }
  server.join();
  std::printf(
      "Inet_OpenUrl and Inet_Read: %.2f ms; bare InternetReadFile: %.2f ms (ratio %.2f); "
      "bare InternetReadFileExA: %.2f ms (ratio %.2f)\n",
      ours, bare, ours / bare, bare_ex, ours / bare_ex);
  return 0;
}
