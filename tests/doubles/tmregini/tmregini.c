/* Answers for one key as the registry would: "Debug" and "MapiSend" are 1, "HomeDir" is what SetHome was given. */
#include <windows.h>

#include <string.h>

static char g_home[160];
static int g_open_keys;

void SetHome(const char* home) { lstrcpynA(g_home, home, sizeof g_home); }
int OpenKeys(void) { return g_open_keys; }

LONG WINAPI TmRegOpenKeyEx(HKEY root, LPCSTR name, DWORD options, REGSAM access, PHKEY key) {
  (void)options;
  (void)access;
  if (root != HKEY_CURRENT_USER || lstrcmpA(name, "Software\\Quenby\\Wrenfold\\Config") != 0)
    return ERROR_FILE_NOT_FOUND;
  ++g_open_keys;
  *key = (HKEY)&g_open_keys;
  return ERROR_SUCCESS;
}

LONG WINAPI TmRegQueryValueEx(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                              LPDWORD size) {
  const DWORD one = 1;
  (void)reserved;
  (void)type;
  if (key != (HKEY)&g_open_keys) return ERROR_INVALID_HANDLE;
  if ((lstrcmpA(name, "Debug") == 0 || lstrcmpA(name, "MapiSend") == 0) && *size >= sizeof one) {
    memcpy(data, &one, sizeof one);
    *size = sizeof one;
    return ERROR_SUCCESS;
  }
  if (lstrcmpA(name, "HomeDir") == 0 && *size >= strlen(g_home) + 1) {
    *size = (DWORD)strlen(g_home) + 1;
    memcpy(data, g_home, *size);
    return ERROR_SUCCESS;
  }
  return ERROR_FILE_NOT_FOUND;
}

LONG WINAPI TmRegCloseKey(HKEY key) {
  if (key == (HKEY)&g_open_keys) --g_open_keys;
  return ERROR_SUCCESS;
}
