/* Reads from "start.txt" beside it: for how long a window shows first, whether a frame follows, whether that frame
 * says that it is ready, and whether a dialog shows in front of it. "1000 1 0 0": a window for a second, then a frame that
 * is never ready. Ends when that file is deleted. Writes to "started.txt" how it was started: flags, show state, command
 * line (UTF-8). */
#include <windows.h>

#include <stdio.h>
#include <wchar.h>

enum { kQueryReady = 21703, kLongestLifeMs = 60000 };

static int g_ready;
static WCHAR g_start[MAX_PATH];

static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == kQueryReady) return g_ready;
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcA(window, message, wparam, lparam);
}

static void Pump(DWORD milliseconds) {
  DWORD start = GetTickCount();
  MSG message;
  while (GetTickCount() - start < milliseconds && GetFileAttributesW(g_start) != INVALID_FILE_ATTRIBUTES) {
    while (PeekMessageA(&message, NULL, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) ExitProcess(0);
      DispatchMessageA(&message);
    }
    Sleep(10);
  }
}

static void TellHowStarted(const WCHAR* file) {
  STARTUPINFOA startup;
  char line[4 * MAX_PATH];
  FILE* stream = _wfopen(file, L"w");
  if (stream == NULL) return;
  GetStartupInfoA(&startup);
  WideCharToMultiByte(CP_UTF8, 0, GetCommandLineW(), -1, line, sizeof line, NULL, NULL);
  fprintf(stream, "%lu %u %s", (unsigned long)startup.dwFlags, startup.wShowWindow, line);
  fclose(stream);
}

int main(void) {
  WCHAR path[MAX_PATH];
  int shown_ms = 0;
  int with_frame = 0;
  int with_dialog = 0;
  FILE* file;
  WNDCLASSA frame = {0};
  HWND window = NULL;
  GetModuleFileNameW(NULL, path, MAX_PATH - 16);
  wcscpy(wcsrchr(path, L'\\') + 1, L"started.txt");
  TellHowStarted(path);
  wcscpy(g_start, path);
  wcscpy(wcsrchr(g_start, L'\\') + 1, L"start.txt");
  file = _wfopen(g_start, L"r");
  if (file == NULL || fscanf(file, "%d %d %d %d", &shown_ms, &with_frame, &g_ready, &with_dialog) != 4)
    return 1;
  fclose(file);
  if (shown_ms > 0) {
    HWND question = CreateWindowExA(0, "STATIC", "Password?", WS_POPUP | WS_VISIBLE, 0, 0, 200, 100, NULL,
                                    NULL, NULL, NULL);
    ShowWindow(question, SW_SHOW);
    ShowWindow(question, SW_SHOW); /* the first call obeys what the starter asked for */
    Pump((DWORD)shown_ms);
    DestroyWindow(question);
  }
  if (with_frame) {
    frame.lpfnWndProc = Procedure;
    frame.lpszClassName = "WrenfoldFrame";
    RegisterClassA(&frame);
    window = CreateWindowExA(0, "WrenfoldFrame", "Wrenfold", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, NULL, NULL,
                             NULL, NULL);
  }
  if (with_dialog) {
    SetActiveWindow(CreateWindowExA(0, "#32770", "Question", WS_POPUP | WS_VISIBLE, 0, 0, 200, 100, window,
                                    NULL, NULL, NULL));
  }
  Pump(kLongestLifeMs);
  return 0;
}
