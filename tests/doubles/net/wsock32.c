#include <winsock2.h>

#include <windows.h>

#include <string.h>

#include "tests/doubles/net/wsock32_state.h"

static struct WinSockState g_state;
struct WinSockState* State(void) {
  return &g_state;
}

int WSAAPI send(SOCKET s, const char* bytes, int size, int flags) {
  (void)s, (void)bytes, (void)flags;
  return size;
}
int WSAAPI recv(SOCKET s, char* bytes, int size, int flags) {
  (void)s, (void)bytes, (void)size, (void)flags;
  return 0;
}
int WSAAPI shutdown(SOCKET s, int how) {
  (void)s;
  return how == SD_BOTH ? 0 : SOCKET_ERROR;
}
int WSAAPI closesocket(SOCKET s) {
  (void)s;
  --g_state.open_sockets;
  return 0;
}
SOCKET WSAAPI socket(int family, int type, int protocol) {
  if (g_state.fail_socket || family != AF_INET || type != SOCK_STREAM || protocol != IPPROTO_TCP)
    return INVALID_SOCKET;
  ++g_state.open_sockets;
  return 42;
}
int WSAAPI connect(SOCKET s, const struct sockaddr* address, int size) {
  (void)s;
  g_state.connected_port = ((const struct sockaddr_in*)address)->sin_port;
  return size == 16 ? 0 : SOCKET_ERROR;
}
unsigned long WSAAPI inet_addr(const char* text) {
  return strcmp(text, "10.0.0.1") == 0 ? 0x0100000A : INADDR_NONE;
}
u_short WSAAPI htons(u_short value) { return (u_short)(value << 8 | value >> 8); }
u_long WSAAPI SwapLong(u_long value); /* exported as ntohl, which an inline function of the header uses */
u_long WSAAPI SwapLong(u_long value) { return value; }

static struct hostent* TheHost(const char* name, unsigned long address) {
  static struct hostent host;
  static unsigned long bytes;
  static char* list[2];
  bytes = address;
  list[0] = (char*)&bytes;
  host.h_name = (char*)name;
  host.h_addr_list = list;
  return &host;
}
struct hostent* WSAAPI gethostbyname(const char* name) {
  return strcmp(name, "mail.example.org") == 0 ? TheHost(name, 0x0201A8C0) : NULL; /* 192.168.1.2 */
}
struct hostent* WSAAPI gethostbyaddr(const char* address, int length, int family) {
  static char name[301];
  (void)address;
  memset(name, 'n', 300);
  memcpy(name + 254, "\x83\x41", 2); /* a double-byte character across the limit of 255 bytes */
  return length == 4 && family == AF_INET ? TheHost(name, 0) : NULL;
}
int WSAAPI WSAStartup(WORD version, LPWSADATA data) {
  (void)data;
  ++g_state.startups;
  g_state.last_startup_version = version;
  return version == 0x0002 ? g_state.startup_result : 0;
}
int WSAAPI WSACleanup(void) { return 0; }
int WSAAPI WSAGetLastError(void) { return -5; }
int WSAAPI ioctlsocket(SOCKET s, long command, u_long* value) {
  (void)s;
  g_state.non_blocking = command == (long)0x8004667E && *value == 1;
  return 0;
}
int WSAAPI setsockopt(SOCKET s, int level, int name, const char* value, int size) {
  (void)s;
  if (level == 0xFFFF && name == 0x1006 && size == 4) memcpy(&g_state.receive_timeout, value, 4);
  return 0;
}
int WSAAPI WSAAsyncSelect(SOCKET s, HWND window, unsigned message, long events) {
  (void)s;
  if (message != 1124 || events != 33) return SOCKET_ERROR;
  PostMessageA(window, message, 42, MAKELONG(FD_CLOSE, 0));
  return 0;
}
