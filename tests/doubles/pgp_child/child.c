/* Stands in for an OpenPGP program. It writes down in the current directory what it was given:
 *
 *   child.path     where it was started from         child.command  its command line
 *   child.stdin    the line on its standard input    child.streams  which standard streams it has: "o", "e"
 *   child.input    its copy of $PgpIn.asc            child.data     its copy of $PgpIn
 *   child.writer   "gone" when nobody can write to its standard input any more, "stays" when somebody still can
 *
 *   child.up       empty: it and its console are up  child.end      empty: it is about to end
 *
 * and does what its environment says: CHILD_SLEEP (milliseconds), CHILD_SAYS and CHILD_WARNS (on standard output and
 * error), CHILD_OUTPUT (contents of $PgpOut.asc; none without it), CHILD_EXIT (exit code), CHILD_EVENT (number of an
 * event of its parent that it sets), CHILD_PATIENCE (milliseconds to wait for the last writer to go). */
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
static void NoteInput(HANDLE input) {
  static char line[65536];
  size_t size = 0;
  DWORD read = 0;
  while (size < sizeof line && ReadFile(input, line + size, (DWORD)(sizeof line - size), &read, NULL) &&
         read > 0) {
    size += read;
    if (line[size - 1] == '\n') break;
  }
  Note("child.stdin", line, size);
}

/* Whether the writing end is still open somewhere: here, when we inherited it. */
static void NoteWriter(HANDLE input, long patience) {
  DWORD waiting;
  BOOL has_writer = TRUE;
  for (; has_writer && patience > 0; patience -= 10) {
    has_writer = PeekNamedPipe(input, NULL, 0, NULL, &waiting, NULL);
    if (has_writer) Sleep(10);
  }
  Note("child.writer", has_writer ? "stays" : "gone", has_writer ? 5 : 4);
}

/* Until the time is over or the test makes the file "child.stop". */
static void SleepUnlessStopped(long milliseconds) {
  for (; milliseconds > 0 && GetFileAttributesA("child.stop") == INVALID_FILE_ATTRIBUTES; milliseconds -= 10)
    Sleep(10);
}

static int IsPipe(DWORD which) { return IsOpen(which) && GetFileType(GetStdHandle(which)) == FILE_TYPE_PIPE; }

int main(void) {
  char path[MAX_PATH], streams[4] = "";
  const char* text;
  /* Once our console has answered it is up. Ended before, Wine leaves the console's process behind for ever, with the files
   * that we inherited. */
  GetConsoleCP();
  Note("child.up", "", 0);
  Note("child.path", path, GetModuleFileNameA(NULL, path, sizeof path));
  Note("child.command", GetCommandLineA(), strlen(GetCommandLineA()));
  if (IsOpen(STD_OUTPUT_HANDLE)) strcat(streams, "o");
  if (IsOpen(STD_ERROR_HANDLE)) strcat(streams, "e");
  Note("child.streams", streams, strlen(streams));
  if (IsPipe(STD_INPUT_HANDLE)) {
    NoteInput(GetStdHandle(STD_INPUT_HANDLE));
    if ((text = getenv("CHILD_PATIENCE")) != NULL) NoteWriter(GetStdHandle(STD_INPUT_HANDLE), atol(text));
  }
  if ((text = getenv("CHILD_EVENT")) != NULL) SetEvent((HANDLE)(ULONG_PTR)strtoull(text, NULL, 10));
  Copy("$PgpIn.asc", "child.input");
  Copy("$PgpIn", "child.data");
  if ((text = getenv("CHILD_SLEEP")) != NULL) SleepUnlessStopped(atol(text));
  Say(STD_OUTPUT_HANDLE, "CHILD_SAYS");
  Say(STD_ERROR_HANDLE, "CHILD_WARNS");
  if ((text = getenv("CHILD_OUTPUT")) != NULL) Note("$PgpOut.asc", text, strlen(text));
  Note("child.end", "", 0);
  return (text = getenv("CHILD_EXIT")) != NULL ? atoi(text) : 0;
}
