/* Calls Simple MAPI through the system's mapi32.dll. Texts come and go as hexadecimal bytes, "-" is null.
 *
 *   mapi_client send FLAGS SUBJECT TEXT [to|cc|bcc NAME ADDRESS]... [file PATH NAME]...
 *   mapi_client documents DELIMITER PATHS
 *   mapi_client session FLAGS              logs on and off
 *   mapi_client find FLAGS                 all identifiers
 *   mapi_client read IDENTIFIER FLAGS
 *   mapi_client delete IDENTIFIER
 *   mapi_client resolve NAME
 *   mapi_client frame                      exit code 0 when a host's frame is there
 *   mapi_client box                        the texts of the box in front of the host
 *   mapi_client window                     the texts in a host's frame that shows; exit code 1 when none does
 *   mapi_client close                      closes every host; exit code 0 when none is left
 *
 * The last line is "code=N ms=N". */
// clang-format off
#include <windows.h>
#include <tlhelp32.h>  // needs the one above
// clang-format on

#include <mapi.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static HMODULE g_mapi;

static void* Proc(const char* name) {
  void* proc = (void*)GetProcAddress(g_mapi, name);
  if (proc == NULL) {
    printf("no %s\n", name);
    exit(3);
  }
  return proc;
}

static char* FromHex(const char* hex) {
  size_t length = strlen(hex) / 2;
  char* text;
  size_t i;
  if (strcmp(hex, "-") == 0) return NULL;
  text = calloc(length + 1, 1);
  for (i = 0; i < length; ++i) {
    char digits[3] = {hex[2 * i], hex[2 * i + 1], 0};
    text[i] = (char)strtoul(digits, NULL, 16);
  }
  return text;
}

static void PrintHex(const char* name, const char* text) {
  printf("%s=", name);
  if (text == NULL) printf("-");
  for (; text != NULL && *text != 0; ++text) printf("%02x", (unsigned char)*text);
  printf("\n");
}

static void PrintRecipient(const char* kind, const MapiRecipDesc* recipient) {
  char name[64];
  sprintf(name, "%s.%lu.name", kind, (unsigned long)recipient->ulRecipClass);
  PrintHex(name, recipient->lpszName);
  sprintf(name, "%s.%lu.address", kind, (unsigned long)recipient->ulRecipClass);
  PrintHex(name, recipient->lpszAddress);
}

static ULONG Send(int count, char** words) {
  MapiMessage message = {0};
  MapiRecipDesc* recipients = calloc((size_t)count, sizeof *recipients);
  MapiFileDesc* files = calloc((size_t)count, sizeof *files);
  int i;
  message.lpszSubject = FromHex(words[1]);
  message.lpszNoteText = FromHex(words[2]);
  message.lpRecips = recipients;
  message.lpFiles = files;
  for (i = 3; i + 2 < count; i += 3) {
    if (strcmp(words[i], "file") == 0) {
      files[message.nFileCount].nPosition = (ULONG)-1;
      files[message.nFileCount].lpszPathName = FromHex(words[i + 1]);
      files[message.nFileCount++].lpszFileName = FromHex(words[i + 2]);
    } else {
      MapiRecipDesc* recipient = &recipients[message.nRecipCount++];
      recipient->ulRecipClass = strcmp(words[i], "to") == 0   ? MAPI_TO
                                : strcmp(words[i], "cc") == 0 ? MAPI_CC
                                                              : MAPI_BCC;
      recipient->lpszName = FromHex(words[i + 1]);
      recipient->lpszAddress = FromHex(words[i + 2]);
    }
  }
  return ((LPMAPISENDMAIL)Proc("MAPISendMail"))(0, 0, &message, (FLAGS)strtoul(words[0], NULL, 0), 0);
}

static ULONG Documents(int count, char** words) {
  (void)count;
  return ((LPMAPISENDDOCUMENTS)Proc("MAPISendDocuments"))(0, FromHex(words[0]), FromHex(words[1]), NULL, 0);
}

static ULONG Session(int count, char** words) {
  LHANDLE session = 0;
  ULONG code =
      ((LPMAPILOGON)Proc("MAPILogon"))(0, NULL, NULL, (FLAGS)strtoul(words[0], NULL, 0), 0, &session);
  (void)count;
  printf("session=%d\n", session != 0);
  if (code == 0) code = ((LPMAPILOGOFF)Proc("MAPILogoff"))(session, 0, 0, 0);
  return code;
}

static ULONG Find(int count, char** words) {
  char seed[512] = "";
  char found[512];
  LPMAPIFINDNEXT find = (LPMAPIFINDNEXT)Proc("MAPIFindNext");
  (void)count;
  for (;;) {
    ULONG code = find(0, 0, NULL, seed, (FLAGS)strtoul(words[0], NULL, 0), 0, found);
    if (code != 0) return code;
    PrintHex("id", found);
    strcpy(seed, found);
  }
}

static ULONG Read(int count, char** words) {
  lpMapiMessage message = NULL;
  ULONG i;
  ULONG code = ((LPMAPIREADMAIL)Proc("MAPIReadMail"))(0, 0, FromHex(words[0]),
                                                      (FLAGS)strtoul(words[1], NULL, 0), 0, &message);
  (void)count;
  if (message == NULL) return code;
  PrintHex("subject", message->lpszSubject);
  PrintHex("text", message->lpszNoteText);
  PrintHex("date", message->lpszDateReceived);
  printf("flags=%lu\n", (unsigned long)message->flFlags);
  if (message->lpOriginator != NULL) PrintRecipient("from", message->lpOriginator);
  for (i = 0; i < message->nRecipCount; ++i) PrintRecipient("recipient", &message->lpRecips[i]);
  for (i = 0; i < message->nFileCount; ++i) {
    PrintHex("file.path", message->lpFiles[i].lpszPathName);
    PrintHex("file.name", message->lpFiles[i].lpszFileName);
  }
  ((LPMAPIFREEBUFFER)Proc("MAPIFreeBuffer"))(message);
  return code;
}

static ULONG Delete(int count, char** words) {
  (void)count;
  return ((LPMAPIDELETEMAIL)Proc("MAPIDeleteMail"))(0, 0, FromHex(words[0]), 0, 0);
}

static ULONG Resolve(int count, char** words) {
  lpMapiRecipDesc recipient = NULL;
  ULONG code = ((LPMAPIRESOLVENAME)Proc("MAPIResolveName"))(0, 0, FromHex(words[0]), 0, 0, &recipient);
  (void)count;
  if (recipient == NULL) return code;
  PrintRecipient("recipient", recipient);
  ((LPMAPIFREEBUFFER)Proc("MAPIFreeBuffer"))(recipient);
  return code;
}

static const struct {
  const char* name;
  int least;
  ULONG (*run)(int count, char** words);
} kCommands[] = {{"send", 3, Send}, {"documents", 2, Documents}, {"session", 1, Session}, {"find", 1, Find},
                 {"read", 2, Read}, {"delete", 1, Delete},       {"resolve", 1, Resolve}};

/* Without MAPI: what the tests need to know of the host. */
static HWND Frame(void) { return FindWindowA("WrenfoldFrame", NULL); }

static int CountHosts(void) {
  HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32 entry;
  int count = 0;
  BOOL more;
  entry.dwSize = sizeof entry;
  for (more = Process32First(snapshot, &entry); more; more = Process32Next(snapshot, &entry)) {
    count += lstrcmpiA(entry.szExeFile, "wrenfold.exe") == 0;
  }
  CloseHandle(snapshot);
  return count;
}

/* Callers that find no host start one each; one that comes up late finds the first closed and serves on. So this
 * goes on until no host process is left, with a window or without. */
static int CloseHosts(void) {
  DWORD start = GetTickCount();
  while (CountHosts() > 0) {
    if (GetTickCount() - start > 30000) return 1;
    PostMessageA(Frame(), WM_CLOSE, 0, 0);
    Sleep(50);
  }
  return 0;
}

static BOOL CALLBACK PrintText(HWND control, LPARAM unused) {
  char text[2048];
  (void)unused;
  /* Not GetWindowText, which does not ask another process. */
  if (SendMessageA(control, WM_GETTEXT, sizeof text, (LPARAM)text) > 0) printf("%s\n", text);
  return TRUE;
}

static int PrintBox(void) {
  HWND frame = Frame();
  HWND box = frame == NULL ? NULL : GetLastActivePopup(frame);
  if (box == frame) return 1;
  EnumChildWindows(box, PrintText, 0);
  return 0;
}

static int PrintOwnTexts(void) {
  HWND frame = Frame();
  if (frame == NULL || !IsWindowVisible(frame)) return 1;
  EnumChildWindows(frame, PrintText, 0);
  return 0;
}

int main(int count, char** words) {
  size_t i;
  if (count == 2 && strcmp(words[1], "frame") == 0) return Frame() == NULL;
  if (count == 2 && strcmp(words[1], "box") == 0) return PrintBox();
  if (count == 2 && strcmp(words[1], "window") == 0) return PrintOwnTexts();
  if (count == 2 && strcmp(words[1], "close") == 0) return CloseHosts();
  setvbuf(stdout, NULL, _IOFBF, 4096);
  g_mapi = LoadLibraryA("mapi32.dll");
  for (i = 0; i < sizeof kCommands / sizeof *kCommands; ++i) {
    if (count >= 2 + kCommands[i].least && strcmp(words[1], kCommands[i].name) == 0) {
      DWORD start = GetTickCount();
      ULONG code = kCommands[i].run(count - 2, words + 2);
      printf("code=%lu ms=%lu\n", (unsigned long)code, (unsigned long)(GetTickCount() - start));
      return 0;
    }
  }
  return 2;
}
