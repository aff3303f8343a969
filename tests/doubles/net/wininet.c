#include <windows.h>
#include <wininet.h>

#include <string.h>

#include "tests/doubles/net/wininet_state.h"

static struct WinInetState g_state;
enum { kFirstHandle = 100, kMostHandles = 1 << 17 };
static int g_next_handle = kFirstHandle;
static char g_is_open[kMostHandles]; /* by handle; a closed one is never given out again */
static __thread long long g_left;    /* of this thread's request */

struct WinInetState* State(void) {
  return &g_state;
}

static HINTERNET NewHandle(void) {
  const int handle = __atomic_add_fetch(&g_next_handle, 1, __ATOMIC_RELAXED);
  __atomic_add_fetch(&g_state.open_handles, 1, __ATOMIC_RELAXED);
  if (handle < kMostHandles) __atomic_store_n(&g_is_open[handle], 1, __ATOMIC_RELAXED);
  return (HINTERNET)(INT_PTR)handle;
}

/* A handle that is not open: counted, and the call fails. */
static BOOL IsOpen(HINTERNET handle) {
  const INT_PTR number = (INT_PTR)handle;
  if (number > kFirstHandle && number < kMostHandles && __atomic_load_n(&g_is_open[number], __ATOMIC_RELAXED))
    return TRUE;
  __atomic_add_fetch(&g_state.bad_handles, 1, __ATOMIC_RELAXED);
  SetLastError(ERROR_INVALID_HANDLE);
  return FALSE;
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
  if (!IsOpen(handle)) return FALSE;
  __atomic_store_n(&g_is_open[(INT_PTR)handle], 0, __ATOMIC_RELAXED);
  __atomic_sub_fetch(&g_state.open_handles, 1, __ATOMIC_RELAXED);
  if (g_state.closed < 64) g_state.closed_order[g_state.closed++] = (int)(INT_PTR)handle;
  SetLastError(ERROR_SUCCESS); /* means nothing behind a success */
  return TRUE;
}

HINTERNET WINAPI InternetOpenUrlA(HINTERNET internet, LPCSTR url, LPCSTR headers, DWORD length, DWORD flags,
                                  DWORD_PTR context) {
  (void)headers, (void)length, (void)context;
  CallOnce(&g_state.on_open_url);
  if (!IsOpen(internet)) return NULL;
  g_state.flags = flags;
  lstrcpynA(g_state.url, url, sizeof g_state.url);
  g_left = g_state.body_size;
  g_state.read_calls = 0;
  const HINTERNET request = g_state.fail_open_url ? NULL : NewHandle();
  CallOnce(&g_state.on_open_url_done);
  if (request == NULL) SetLastError(ERROR_INTERNET_CANNOT_CONNECT);
  return request;
}

BOOL WINAPI InternetReadFile(HINTERNET request, LPVOID buffer, DWORD room, LPDWORD read) {
  (void)request, (void)buffer, (void)room;
  *read = 0;
  return TRUE;
}

BOOL WINAPI InternetReadFileExA(HINTERNET request, LPINTERNET_BUFFERSA record, DWORD flags,
                                DWORD_PTR context) {
  (void)context;
  CallOnce(&g_state.on_read);
  if (!IsOpen(request)) return FALSE;
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
  CallOnce(&g_state.on_read_done);
  return TRUE;
}

BOOL WINAPI InternetGetLastResponseInfoA(LPDWORD number, LPSTR text, LPDWORD length) {
  if (text != NULL || length != NULL || !g_state.response_succeeds) return FALSE;
  *number = g_state.response_code;
  return TRUE;
}

BOOL WINAPI HttpQueryInfoA(HINTERNET request, DWORD level, LPVOID buffer, LPDWORD length, LPDWORD index) {
  (void)index;
  if (!IsOpen(request)) return FALSE;
  if ((level & 0xFFFF) == HTTP_QUERY_CUSTOM) { /* the buffer has the name of the header that is wanted */
    lstrcpynA(g_state.header_name, buffer, sizeof g_state.header_name);
    SetLastError(ERROR_HTTP_HEADER_NOT_FOUND);
    return FALSE;
  }
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
