/* WFINFO.dll loaded and unloaded by a program in C: docs/from-your-program.md.
 *
 *   x86_64-w64-mingw32-gcc load.c -o load.exe
 *   cl load.c */
#include <windows.h>

#include <stdio.h>

typedef void (*Notify)(const void* info);
typedef const char* (*TextOfText)(const char* text);
typedef int (*Number)(void);

/* Not in the library's memory: it stays known to the library until that is gone. */
static void OnError(const char* text) { fprintf(stderr, "%s\n", text); }

int main(void) {
  const struct {
    unsigned int size;
    int english;
    void (*callback)(const char* text);
  } info = {sizeof info, 1, OnError};
  const HMODULE library = LoadLibraryA("WFINFO.dll");
  if (library == NULL) return fprintf(stderr, "no WFINFO.dll: error %lu\n", (unsigned long)GetLastError()), 1;
  ((Notify)(void*)GetProcAddress(library, "NotifyWrenfoldInfo"))(&info);
  printf("%s\n", ((TextOfText)(void*)GetProcAddress(library, "SetNameOnly"))("Alice <alice@example.com>"));

  /* On the thread that used them, when no call runs. The text above ends with the library. */
  ((Number)(void*)GetProcAddress(library, "StopAutoPushTimer"))();
  ((Number)(void*)GetProcAddress(library, "Sock_closesocket"))();
  ((Number)(void*)GetProcAddress(library, "Inet_Close"))();
  FreeLibrary(library);
  printf("loaded: %d\n", GetModuleHandleA("WFINFO.dll") != NULL);
  return 0;
}
