#include "src/net/socket_client_win.h"

#include "src/net/winsock_binding_win.h"

#include <cstring>
#include <optional>

#include "src/bridge/module_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/text/host_text.h"

namespace wfinfo {

const char* g_sockErrorText = nullptr;

namespace {

// The texts of this file are English in both languages.
constexpr char kNoLibrary[] = "Cannot load/initialize socket library.";
constexpr char kNoName[] = "gethostbyname failed, cannot solve host name to ip address.";
constexpr char kNoSocket[] = "socket function failed.";
constexpr char kNoConnection[] = "connect function failed.";

constexpr UINT kSocketEvent = WM_USER + 100;
static_assert(kSocketEvent == 1124);

constexpr int kBufferSize = 32768;
constexpr int kBufferUsed = kBufferSize - 16;  // the last bytes are never offered
constexpr int kFullBelow = 16;                 // room with which the buffer counts as full
constexpr DWORD kReceiveLimitMs = 20000;       // for the whole answer, from the start
constexpr DWORD kPumpWaitMs = 1000;
constexpr int kReceiveTimeoutMs = 100000;
constexpr std::size_t kNameLimit = 256;  // of a host name, terminator included

// The one connection. All for the host's user-interface thread, without a lock.
SOCKET g_socket = 0;         // 0: none
char* g_received = nullptr;  // kBufferSize bytes from the first receive on, never freed
int g_receivedCount = 0;
bool g_waiting = false;  // while ReceiveAnswer waits

void CloseConnection() {
  WinSock().shutdown(g_socket, SD_BOTH);
  WinSock().closesocket(g_socket);
  g_socket = 0;
}

void EndExchange() {
  g_received[g_receivedCount] = '\0';
  CloseConnection();
  g_waiting = false;
}

// Reads all that is there. The exchange ends when the peer closed, on an error or with a full buffer.
void ReadPending() {
  int room = kBufferUsed - g_receivedCount;
  while (room > kFullBelow) {
    const int length = WinSock().recv(g_socket, g_received + g_receivedCount, room, 0);
    if (length == SOCKET_ERROR && WinSock().WSAGetLastError() == WSAEWOULDBLOCK) return;
    if (length <= 0) break;
    g_receivedCount += length;
    room -= length;
  }
  EndExchange();
}

LRESULT CALLBACK SockProxyWndProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != kSocketEvent) return DefWindowProcA(window, message, wparam, lparam);
  if (!g_waiting) return 0;
  if (LOWORD(lparam) == FD_READ) ReadPending();
  // At a close, data still pending is not read: the macro gets what came before the close was signalled.
  if (LOWORD(lparam) == FD_CLOSE) EndExchange();
  return 0;
}

HWND MakeProxyWindow() {
  const HWND window = CreateWindowExA(0, "STATIC", "Wrenfold_WfInfoSockProxy", WS_POPUP, 0, 0, 0, 0, nullptr,
                                      nullptr, g_hInstance, nullptr);
  if (window != nullptr)
    SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&SockProxyWndProc));
  return window;
}

// Takes this window's socket messages only; the thread's other messages stay queued. WM_QUIT comes whatever
// is asked for: the exchange goes on to its end, which is near, and then the thread is told again.
void PumpUntilDone(HWND window) {
  const DWORD start = GetTickCount();
  std::optional<int> quit;  // exit code
  do {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, kPumpWaitMs, QS_ALLPOSTMESSAGE);
    MSG message;
    if (!PeekMessageA(&message, window, kSocketEvent, kSocketEvent, PM_REMOVE)) continue;
    if (message.message == WM_QUIT) {
      quit = static_cast<int>(message.wParam);
    } else {
      DispatchMessageA(&message);
    }
  } while (g_waiting && GetTickCount() - start <= kReceiveLimitMs);
  if (quit) PostQuitMessage(*quit);
}

bool FindAddress(const char* host, IN_ADDR& address) {
  address.s_addr = WinSock().inet_addr(host);
  if (address.s_addr != INADDR_NONE) return true;
  const hostent* const found = WinSock().gethostbyname(host);
  if (found == nullptr || found->h_addr_list[0] == nullptr) return false;
  std::memcpy(&address, found->h_addr_list[0], sizeof address);
  return true;
}

int FailWith(const char* text) {
  g_sockErrorText = text;
  return 0;
}

int Connect(const SOCKADDR_IN& address, bool non_blocking) {
  g_socket = WinSock().socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  if (g_socket == INVALID_SOCKET) {
    g_socket = 0;
    return FailWith(kNoSocket);
  }
  WinSock().setsockopt(g_socket, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&kReceiveTimeoutMs),
                       sizeof kReceiveTimeoutMs);
  if (WinSock().connect(g_socket, reinterpret_cast<const SOCKADDR*>(&address), sizeof address) != 0) {
    WinSock().closesocket(g_socket);
    g_socket = 0;  // its number may soon be another socket's
    return FailWith(kNoConnection);
  }
  u_long on = 1;
  if (non_blocking) WinSock().ioctlsocket(g_socket, static_cast<long>(FIONBIO), &on);
  return 1;
}

}  // namespace

int ConnectSocket(const char* host, unsigned port, bool non_blocking) {
  g_sockErrorText = nullptr;
  if (!EnsureWinSock()) return FailWith(kNoLibrary);
  if (g_socket != 0) CloseConnection();
  SOCKADDR_IN address{};
  static_assert(sizeof address == 16);
  address.sin_family = AF_INET;
  if (!FindAddress(host, address.sin_addr)) return FailWith(kNoName);
  address.sin_port = WinSock().htons(static_cast<u_short>(port));
  return Connect(address, non_blocking);
}

int SendText(const char* text) {
  g_sockErrorText = nullptr;
  if (g_socket == 0) return 0;
  return WinSock().send(g_socket, text, static_cast<int>(std::strlen(text)), 0) != SOCKET_ERROR ? 1 : 0;
}

long long ReceiveAnswer() {
  g_sockErrorText = nullptr;
  if (g_socket == 0) return 0;
  if (g_received == nullptr) g_received = static_cast<char*>(LocalAlloc(LPTR, kBufferSize));
  if (g_received == nullptr) return 0;
  g_receivedCount = 0;
  const HWND window = MakeProxyWindow();
  if (window == nullptr) return 0;
  WinSock().WSAAsyncSelect(g_socket, window, kSocketEvent, FD_READ | FD_CLOSE);
  g_waiting = true;
  PumpUntilDone(window);
  g_waiting = false;
  if (g_socket != 0) CloseConnection();
  g_received[g_receivedCount] = '\0';
  DestroyWindow(window);
  return g_receivedCount;
}

const char* ReceivedText() {
  g_sockErrorText = nullptr;
  return g_received != nullptr ? g_received : kNoText;
}

void DropSocket() {
  g_sockErrorText = nullptr;
  if (g_socket != 0) CloseConnection();
}

const char* AddressOfName(const char* name) {
  if (!EnsureWinSock()) {
    ReportError("Failed to load/initialize socket library.");
    return kNoText;
  }
  const hostent* const found = WinSock().gethostbyname(name);
  if (found == nullptr || found->h_addr_list[0] == nullptr) {
    g_sockErrorText = kNoName;
    return nullptr;
  }
  // The four bytes read as one number of this machine: a.b.c.d comes out as d.c.b.a.
  DWORD value;
  std::memcpy(&value, found->h_addr_list[0], sizeof value);
  wsprintfA(g_resultText, "%u.%u.%u.%u", value >> 24, (value >> 16) & 255, (value >> 8) & 255, value & 255);
  return g_resultText;
}

const char* NameOfAddress(const char* address) {
  if (!EnsureWinSock()) {
    ReportError("Failed to load/initialize socket library.");
    return kNoText;
  }
  const DWORD value = WinSock().inet_addr(address);
  if (value == INADDR_NONE) {
    ReportError("Sock_gethostbyaddr: Cannot understand IP address string passed by parameter.");
    return kNoText;
  }
  const hostent* const found =
      WinSock().gethostbyaddr(reinterpret_cast<const char*>(&value), sizeof value, AF_INET);
  if (found == nullptr || found->h_name == nullptr) return kNoText;
  CopyWithinLimit(g_resultText, found->h_name, kNameLimit);
  return g_resultText;
}

long long LastSocketError() {
  const WinSockBinding* const bound = g_winSock.load(std::memory_order_acquire);
  return bound != nullptr && bound->WSAGetLastError != nullptr ? bound->WSAGetLastError() : 0;
}

}  // namespace wfinfo
