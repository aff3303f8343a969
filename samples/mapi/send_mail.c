/* Sends a mail through whatever program is the system's mail client: Simple MAPI in C.
 *
 *   send_mail ADDRESS SUBJECT TEXT [FILE [NAME]]...
 *
 * NAME is what the mail calls the file. Build, with the encoding of texts in mind:
 *   x86_64-w64-mingw32-gcc -municode send_mail.c -o send_mail.exe      (or: cl send_mail.c)
 *
 * The program links to nothing of ours: mapi32.dll of the system finds the library that is registered (see
 * docs/simple-mapi.md). With MAPI_DIALOG in place of the 0 the user sees the mail before it goes. */
#include <windows.h>

#include <mapi.h>
#include <stdio.h>
#include <stdlib.h>

enum { MOST_FILES = 16 };

static char* Converted(UINT code_page, const wchar_t* text, BOOL* lost) {
  const DWORD flags = code_page == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
  const int size = WideCharToMultiByte(code_page, flags, text, -1, NULL, 0, NULL, NULL);
  char* const bytes = malloc((size_t)size);
  if (bytes == NULL) exit(1);
  WideCharToMultiByte(code_page, flags, text, -1, bytes, size, NULL, lost);
  return bytes;
}

/* Subject and text may be UTF-8. */
static char* Utf8(const wchar_t* text) { return Converted(CP_UTF8, text, NULL); }

/* Names, addresses and paths are code page 932. What it lacks would arrive as "?", or name another file. */
static char* HostText(const wchar_t* text) {
  BOOL lost = FALSE;
  char* const bytes = Converted(932, text, &lost);
  if (!lost) return bytes;
  fprintf(stderr, "code page 932 lacks a character of %s\n", Utf8(text));
  exit(1);
}

static ULONG AddFiles(MapiFileDesc* files, wchar_t** words, int count) {
  ULONG n = 0;
  for (int at = 0; at < count && n < MOST_FILES; at += 2) {
    MapiFileDesc* const file = &files[n++];
    file->nPosition = (ULONG)-1; /* not inside the text */
    /* A full path; the file may be deleted once the call is back. Then the name that the mail shows. */
    file->lpszPathName = HostText(words[at]);
    file->lpszFileName = at + 1 < count ? HostText(words[at + 1]) : NULL;
  }
  return n;
}

/* The few texts made here live as long as this short program. */
int wmain(int count, wchar_t** words) {
  MapiRecipDesc recipient = {0};
  MapiFileDesc files[MOST_FILES] = {{0}};
  MapiMessage message = {0};
  HMODULE mapi;
  LPMAPISENDMAIL send;
  ULONG code;

  if (count < 4) {
    fprintf(stderr, "send_mail ADDRESS SUBJECT TEXT [FILE [NAME]]...\n");
    return 2;
  }
  mapi = LoadLibraryA("mapi32.dll");
  send = mapi != NULL ? (LPMAPISENDMAIL)(void*)GetProcAddress(mapi, "MAPISendMail") : NULL;
  if (send == NULL) {
    fprintf(stderr, "this system has no Simple MAPI\n");
    return 1;
  }

  recipient.ulRecipClass = MAPI_TO;
  recipient.lpszAddress = HostText(words[1]);
  message.lpszSubject = Utf8(words[2]);
  message.lpszNoteText = Utf8(words[3]);
  message.nRecipCount = 1;
  message.lpRecips = &recipient;
  message.nFileCount = AddFiles(files, words + 4, count - 4);
  message.lpFiles = files;

  /* No session is needed. 0 tells that the mail was handed over, or lost: what was sent lies in the host's outbox. */
  code = send(0, 0, &message, 0, 0);
  printf("MAPISendMail: %lu\n", (unsigned long)code);
  return code == 0 ? 0 : 1;
}
