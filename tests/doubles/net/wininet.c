#include <windows.h>
#include <wininet.h>

#include <string.h>

#include "wininet_state.h"

static struct WinInetState g_state;
static int g_next_handle = 100;
static __thread long long g_left; /* of this thread's request */

struct WinInetState* State(void) { return &g_state; }

static HINTERNET NewHandle(void) {
  __atomic_add_fetch(&g_state.open_handles, 1, __ATOMIC_RELAXED);
  return (HINTERNET)(INT_PTR)__atomic_add_fetch(&g_next_handle, 1, __ATOMIC_RELAXED);
}

static void CallOnce(void (**hook)(void)) {
  void (*const call)(void) = *hook;
  *hook = NULL;
  if (call != NULL) call();
}

HINTERNET WINAPI InternetOpenA(LPCSTR agent, DWORD type, LPCSTR proxy, LPCSTR bypass, DWORD flags) {
  (void)type, (void)proxy, (void)bypass, (void)flags;
  ++g_state.opens;
  lstrcpynA(g_state.agent, agent, sizeof g_state.agent);
  return g_state.fail_open ? NULL : NewHandle();
}

BOOL WINAPI InternetCloseHandle(HINTERNET handle) {
  __atomic_sub_fetch(&g_state.open_handles, 1, __ATOMIC_RELAXED);
  if (g_state.closed < 64) g_state.closed_order[g_state.closed++] = (int)(INT_PTR)handle;
  return TRUE;
}

HINTERNET WINAPI InternetOpenUrlA(HINTERNET internet, LPCSTR url, LPCSTR headers, DWORD length, DWORD flags,
                                  DWORD_PTR context) {
  (void)internet, (void)headers, (void)length, (void)context;
  CallOnce(&g_state.on_open_url);
  g_state.flags = flags;
  lstrcpynA(g_state.url, url, sizeof g_state.url);
  g_left = g_state.body_size;
  g_state.read_calls = 0;
  return g_state.fail_open_url ? NULL : NewHandle();
}

BOOL WINAPI InternetReadFile(HINTERNET request, LPVOID buffer, DWORD room, LPDWORD read) {
  (void)request, (void)buffer, (void)room;
  *read = 0;
  return TRUE;
}

BOOL WINAPI InternetReadFileExA(HINTERNET request, LPINTERNET_BUFFERSA record, DWORD flags, DWORD_PTR context) {
  (void)request, (void)context;
  CallOnce(&g_state.on_read);
  if (flags != IRF_SYNC || record->dwStructSize != 56) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
  }
  if (g_state.read_calls < 256) g_state.rooms[g_state.read_calls] = record->dwBufferLength;
  if (g_state.fail_read_after >= 0 && g_state.read_calls >= g_state.fail_read_after) {
    SetLastError(g_state.read_error);
    return FALSE;
  }
  ++g_state.read_calls;
  const DWORD most = g_state.fill_whole ? record->dwBufferLength
                                        : (record->dwBufferLength < 5000 ? record->dwBufferLength : 5000);
  const DWORD give = g_left < most ? (DWORD)g_left : most;
  memset(record->lpvBuffer, 'b', give);
  g_left -= give;
  record->dwBufferLength = give;
  return TRUE;
}

BOOL WINAPI InternetGetLastResponseInfoA(LPDWORD number, LPSTR text, LPDWORD length) {
  if (text != NULL || length != NULL || !g_state.response_succeeds) return FALSE;
  *number = g_state.response_code;
  return TRUE;
}

BOOL WINAPI HttpQueryInfoA(HINTERNET request, DWORD level, LPVOID buffer, LPDWORD length, LPDWORD index) {
  (void)request, (void)index;
  if (g_state.empty_header) {
    *length = 0;
    return TRUE;
  }
  if (level == 1 && *length == 8191) { /* the longest value that fits */
    memset(buffer, 'h', 8191);
    return TRUE;
  }
  return FALSE;
}
