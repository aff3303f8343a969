// show_state FILE: writes the SW_ value that its starter gave it, "none" without one. The file appears when
// it is whole.
#include <windows.h>

#include <stdio.h>

int main(int count, char** arguments) {
  char unfinished[MAX_PATH];
  STARTUPINFOA startup;
  if (count != 2) return 2;
  GetStartupInfoA(&startup);
  snprintf(unfinished, sizeof unfinished, "%s.part", arguments[1]);
  FILE* file = fopen(unfinished, "wb");
  if (file == NULL) return 1;
  if ((startup.dwFlags & STARTF_USESHOWWINDOW) != 0) {
    fprintf(file, "%u", (unsigned)startup.wShowWindow);
  } else {
    fputs("none", file);
  }
  fclose(file);
  return MoveFileA(unfinished, arguments[1]) ? 0 : 1;
}
