/* A mail host in one file: docs/write-a-host.md tells of each piece. It has one mail and calls the library itself, as the
 * macros of a host would.
 *
 *   x86_64-w64-mingw32-gcc minimal_host.c -I. libWFINFO.dll.a -o minimal_host.exe
 *   cl minimal_host.c WFINFO.lib user32.lib */
#include <windows.h>

#include "wfinfo.h"

enum { HOST_REQUEST = 21623, GET_REQUEST_TARGET = 21664, GET_ACTIVE_VIEW = 21701 };
enum { ROOT_MAIL = 1, SELECT_FOLDER = 8, MAIL_COUNT = 30, HOME_DIR = 46 };
enum { DURING_DIALOG = 1, CLOSE_REFUSAL = 2 };

static HWND own_dialog;

static void Print(const char* format, ...) {
  char line[1025];
  DWORD written;
  va_list values;
  va_start(values, format);
  wvsprintfA(line, format, values);
  va_end(values);
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), line, (DWORD)lstrlenA(line), &written, NULL);
}

/* What the library tells its user, and what it logs. Both texts are gone when the function returns. */
static void OnMessage(const char* text) { Print("message: %s\n", text); }
static void OnLog(const char* text, unsigned int number) { Print("log %u: %s\n", number, text); }

/* The texts of answers stay where they are: a macro reads them there. */
static const char kMail[] = "From: Alice <alice@example.com>\r\nSubject: Minutes\r\n\r\nDear Bob\r\n";
static const char kHome[] = "C:\\Host";

/* A macro may leave a text out: its slot is null then. */
static LRESULT SelectTheFolder(const long long* slots) {
  const char* const folder = (const char*)slots[1];
  Print("request: folder %s\n", folder != NULL ? folder : "left out");
  return 1;
}

/* `slots` is null for codes that bring nothing. */
static LRESULT Answer(int code, const long long* slots) {
  switch (code) {
    case ROOT_MAIL:
      return (LRESULT)kMail;
    case SELECT_FOLDER:
      return SelectTheFolder(slots);
    case MAIL_COUNT:
      return 1;
    case HOME_DIR:
      return (LRESULT)kHome;
    default:
      return 0; /* not served: 0 or "" in the macro */
  }
}

/* The refusal is the dialog of this thread that is not the host's own. A person would close it. */
static BOOL CALLBACK CloseRefusal(HWND window, LPARAM unused) {
  char class_name[16], text[256];
  (void)unused;
  GetClassNameA(window, class_name, sizeof class_name);
  if (window == own_dialog || lstrcmpA(class_name, "#32770") != 0) return TRUE;
  GetDlgItemTextA(window, 0xFFFF, text, sizeof text);
  Print("box: %s\n", text);
  PostMessageA(window, WM_COMMAND, IDOK, 0);
  return FALSE;
}

/* What macros meet while the host shows a modal dialog. */
static void CallDuringDialog(HWND frame) {
  own_dialog = GetLastActivePopup(frame);
  Print("in a dialog, HomeDir: %s\n", HomeDir());
  SetTimer(frame, CLOSE_REFUSAL, 50, NULL);
  Print("in a dialog, MailCount: %d\n", (int)MailCount());
  KillTimer(frame, CLOSE_REFUSAL);
  PostMessageA(own_dialog, WM_COMMAND, IDOK, 0);
}

static void OnTimer(HWND frame, WPARAM timer) {
  KillTimer(frame, timer);
  if (timer == DURING_DIALOG) CallDuringDialog(frame);
  if (timer == CLOSE_REFUSAL) EnumThreadWindows(GetCurrentThreadId(), CloseRefusal, 0);
}

static LRESULT CALLBACK Frame(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case GET_ACTIVE_VIEW:
      return 0; /* nobody acts for the frame */
    case GET_REQUEST_TARGET:
      return (LRESULT)window;
    case HOST_REQUEST:
      return Answer((int)wparam, (const long long*)lparam);
    case WM_TIMER:
      OnTimer(window, wparam);
      return 0;
  }
  return DefWindowProcA(window, message, wparam, lparam);
}

static HWND MakeFrame(void) {
  WNDCLASSA frame_class = {0};
  frame_class.lpfnWndProc = Frame;
  frame_class.hInstance = GetModuleHandleA(NULL);
  frame_class.lpszClassName = "WrenfoldFrame";
  RegisterClassA(&frame_class);
  return CreateWindowA("WrenfoldFrame", "Minimal host", WS_OVERLAPPEDWINDOW, 0, 0, 320, 200, NULL, NULL,
                       frame_class.hInstance, NULL);
}

int main(void) {
  static const void* services[64];
  const struct {
    unsigned int size;
    int english;
    void (*message)(const char* text);
  } info = {sizeof info, 1, OnMessage};
  HWND frame;

  services[32] = (const void*)OnLog;
  NotifyWrenfoldInfo(&info);
  Print("interface %d\n", GetWFInfoVersion((void*)services));
  frame = MakeFrame();

  Print("Subject: %s\n", RootHeader("Subject"));
  Print("MailCount: %d\n", (int)MailCount());
  SelectFolder("Inbox", NULL);
  SelectFolder(NULL, NULL);
  Print("not served: %d\n", (int)MailType());
  DumpSmall("a line for the log");
  RootHeader(NULL);

  SetTimer(frame, DURING_DIALOG, 50, NULL);
  MessageBoxA(frame, "A question of the host", "Minimal host", MB_OK);
  Print("behind the dialog, MailCount: %d\n", (int)MailCount());
  DestroyWindow(frame);
  return 0;
}
