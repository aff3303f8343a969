/* WFINFO.dll from a program in C: docs/from-your-program.md tells of each piece.
 *
 *   x86_64-w64-mingw32-gcc use.c -I. libWFINFO.dll.a -o use.exe
 *   cl /utf-8 use.c WFINFO.lib user32.lib
 *
 * Beside <mapi.h> define WFINFO_NO_MAPI in front of wfinfo.h. */
#include <windows.h>

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "host_text.h"
#include "wfinfo.h"

static void OnError(const char* text) { fprintf(stderr, "%s\n", text); }

/* Errors go to standard error: a box would wait for somebody to close it. */
static void NoBoxes(void) {
  const struct {
    unsigned int size;
    int english;
    void (*callback)(const char* text);
  } info = {sizeof info, 1, OnError};
  NotifyWrenfoldInfo(&info);
}

static SRWLOCK library = SRWLOCK_INIT;

/* The name in "Alice <alice@example.com>". The lock is held until the text is copied. */
static void NameOf(const char* entry, char* name, size_t size) {
  AcquireSRWLockExclusive(&library);
  lstrcpynA(name, SetNameOnly(entry), (int)size);
  ReleaseSRWLockExclusive(&library);
}

/* How often a name was another thread's. */
static DWORD WINAPI AskOften(void* given) {
  const char* const name = given;
  DWORD wrong = 0;
  char entry[64], answer[64];
  wsprintfA(entry, "%s <%s@example.com>", name, name);
  for (int n = 0; n < 500000; ++n) {
    NameOf(entry, answer, sizeof answer);
    wrong += strcmp(answer, name) != 0;
  }
  return wrong;
}

static void TwoThreads(void) {
  DWORD wrong[2] = {0, 0};
  HANDLE threads[2] = {CreateThread(NULL, 0, AskOften, "Alice", 0, NULL),
                       CreateThread(NULL, 0, AskOften, "Bob", 0, NULL)};
  WaitForMultipleObjects(2, threads, TRUE, INFINITE);
  for (int n = 0; n < 2; ++n) GetExitCodeThread(threads[n], &wrong[n]), CloseHandle(threads[n]);
  printf("wrong names in two threads: %lu\n", (unsigned long)(wrong[0] + wrong[1]));
}

/* Both results lie in the same place: the second call ends the first one's text. */
static void OneAtATime(void) {
  const char* const list = "Alice <alice@example.com>, Bob <bob@example.com>";
  const char* const kept = SetNameOnly("Alice <alice@example.com>");
  char first[512];
  SetNameOnly("Bob <bob@example.com>");
  printf("kept without a copy: %s\n", kept);

  lstrcpynA(first, GetEmailList(list, 0), sizeof first);
  printf("copied: %s; %s\n", first, GetEmailList(list, 1));
}

static void Texts(void) {
  char* const host = ToHostText("caf\xC3\xA9 \xE6\xBC\xA2\xE5\xAD\x97");
  char* const utf8 = host != NULL ? FromHostText(ToUpper(host)) : NULL;
  printf("through host text: %s\n", utf8 != NULL ? utf8 : "no memory");
  free(utf8);
  free(host);

  /* Two of the three bytes of a character in UTF-8. Nothing complains. */
  printf("UTF-8 as it is:");
  for (const char* at = LeftStr("\xE6\xBC\xA2\xE5\xAD\x97", 2); *at != '\0'; ++at)
    printf(" %02X", (unsigned char)*at);
  printf("\n");
}

static void NumbersOrTexts(void) {
  printf("a number: %s\n", LeftStr("abcdef", 3));
  printf("a text: %s\n", LeftStr("abcdef", (intptr_t) "3"));
  printf("its result is one too: %s\n",
         (const char*)(intptr_t)IfEqual("a", "a", (intptr_t) "the same", (intptr_t) "others"));
}

int main(void) {
  NoBoxes();
  printf("interface %d, in a host: %d\n", GetWFInfoVersion(NULL), IsWrenfold());
  OneAtATime();
  Texts();
  NumbersOrTexts();
  TwoThreads();
  printf("mails: %lld\n", MailCount());
  printf("without a text: \"%s\"\n", SetNameOnly(NULL));
  return 0;
}
