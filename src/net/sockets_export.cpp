// A TCP client for macros.
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/net/socket_client_win.h"

using namespace wfinfo;

int Sock_connect(const char* host, unsigned port, int non_blocking) noexcept {
  return IsText(host) ? ConnectSocket(host, port, non_blocking != 0) : 0;
}
int Sock_send(const char* text) noexcept { return IsText(text) ? SendText(text) : 0; }
long long Sock_recv() noexcept { return ReceiveAnswer(); }
const char* Sock_GetRecvData() noexcept { return ReceivedText(); }
int Sock_closesocket() noexcept {
  DropSocket();
  return 1;
}
const char* Sock_gethostbyname(const char* name) noexcept {
  return IsText(name) ? AddressOfName(name) : kNoText;
}
const char* Sock_gethostbyaddr(const char* address) noexcept {
  return IsText(address) ? NameOfAddress(address) : kNoText;
}
long long Sock_WSAGetLastError() noexcept { return LastSocketError(); }
const char* Sock_GetErrorString() noexcept { return g_sockErrorText != nullptr ? g_sockErrorText : kNoText; }
