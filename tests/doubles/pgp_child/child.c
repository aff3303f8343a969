/* Stands in for an OpenPGP program. It writes down in the current directory what it was given:
 *
 *   child.path     where it was started from         child.command  its command line
 *   child.stdin    the line on its standard input    child.streams  which standard streams it has: "o", "e"
 *   child.input    its copy of $PgpIn.asc            child.data     its copy of $PgpIn
 *
 * and does what its environment says: CHILD_SLEEP (milliseconds), CHILD_SAYS and CHILD_WARNS (on standard output and
 * error), CHILD_OUTPUT (contents of $PgpOut.asc; none without it), CHILD_EXIT (exit code). */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

static void Note(const char* name, const char* text, size_t size) {
  FILE* file = fopen(name, "wb");
  if (file == NULL) return;
  fwrite(text, 1, size, file);
  fclose(file);
}

static void Copy(const char* from, const char* to) { CopyFileA(from, to, FALSE); }

static int IsOpen(DWORD which) {
  HANDLE handle = GetStdHandle(which);
  DWORD flags;
  return handle != NULL && handle != INVALID_HANDLE_VALUE && GetHandleInformation(handle, &flags);
}

static void Say(DWORD which, const char* variable) {
  const char* text = getenv(variable);
  DWORD written;
  if (text != NULL) WriteFile(GetStdHandle(which), text, (DWORD)strlen(text), &written, NULL);
}

/* One line: the writing end may stay open as long as we live. */
static void NoteInput(void) {
  static char line[65536];
  size_t size = 0;
  DWORD read = 0;
  if (!IsOpen(STD_INPUT_HANDLE) || GetFileType(GetStdHandle(STD_INPUT_HANDLE)) != FILE_TYPE_PIPE) return;
  while (size < sizeof line && ReadFile(GetStdHandle(STD_INPUT_HANDLE), line + size, 1, &read, NULL) && read == 1) {
    if (line[size++] == '\n') break;
  }
  Note("child.stdin", line, size);
}

int main(void) {
  char path[MAX_PATH], streams[4] = "";
  const char* text;
  Note("child.path", path, GetModuleFileNameA(NULL, path, sizeof path));
  Note("child.command", GetCommandLineA(), strlen(GetCommandLineA()));
  if (IsOpen(STD_OUTPUT_HANDLE)) strcat(streams, "o");
  if (IsOpen(STD_ERROR_HANDLE)) strcat(streams, "e");
  Note("child.streams", streams, strlen(streams));
  NoteInput();
  Copy("$PgpIn.asc", "child.input");
  Copy("$PgpIn", "child.data");
  if ((text = getenv("CHILD_SLEEP")) != NULL) Sleep((DWORD)atol(text));
  Say(STD_OUTPUT_HANDLE, "CHILD_SAYS");
  Say(STD_ERROR_HANDLE, "CHILD_WARNS");
  if ((text = getenv("CHILD_OUTPUT")) != NULL) Note("$PgpOut.asc", text, strlen(text));
  return (text = getenv("CHILD_EXIT")) != NULL ? atoi(text) : 0;
}
