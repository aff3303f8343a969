/* gpg.exe for Wine: runs run_gpg.sh, which stands beside it, with the tail of the command line. Wine starts the script
 * as a Unix process without a handle to wait for, so input, output and exit code go through files. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

typedef char*(CDECL* UnixName)(LPCWSTR);

/* What stands behind the first word. */
static const char* Tail(const char* command) {
  char end = *command == '"' ? '"' : ' ';
  if (end == '"') ++command;
  while (*command != '\0' && *command != end) ++command;
  return *command == '\0' ? command : command + 1;
}

/* The pass phrase: one line, its CR left out. Without --passphrase-fd there is none. */
static void WriteInput(const char* name, const char* arguments) {
  FILE* file = fopen(name, "wb");
  char byte;
  DWORD read;
  if (file == NULL) exit(100);
  while (strstr(arguments, "--passphrase-fd") != NULL &&
         ReadFile(GetStdHandle(STD_INPUT_HANDLE), &byte, 1, &read, NULL) && read == 1) {
    if (byte != '\r') fputc(byte, file);
    if (byte == '\n') break;
  }
  fclose(file);
}

static void CopyOut(const char* name) {
  char block[4096];
  DWORD read, written;
  HANDLE file = CreateFileA(name, GENERIC_READ, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
  if (file == INVALID_HANDLE_VALUE) return;
  while (ReadFile(file, block, sizeof block, &read, NULL) && read != 0) {
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), block, read, &written, NULL);
  }
  CloseHandle(file);
}

static int AwaitCode(const char* name) {
  int code = 101, tries;
  for (tries = 0; tries < 3000; ++tries) {
    FILE* file = fopen(name, "rb");
    if (file != NULL) {
      if (fscanf(file, "%d", &code) != 1) code = 102;
      fclose(file);
      return code;
    }
    Sleep(20);
  }
  return code;
}

int main(void) {
  UnixName unix_name =
      (UnixName)(void*)GetProcAddress(GetModuleHandleA("kernel32"), "wine_get_unix_file_name");
  char base[MAX_PATH], name[MAX_PATH + 8], script[MAX_PATH];
  static char command[40000];
  WCHAR wide[MAX_PATH];
  STARTUPINFOA startup;
  PROCESS_INFORMATION process;
  const char* arguments = Tail(GetCommandLineA());
  int code;
  memset(&startup, 0, sizeof startup);
  startup.cb = sizeof startup;
  if (unix_name == NULL) return 103;
  GetTempPathA(sizeof base - 32, base);
  sprintf(base + strlen(base), "gpg%lu", (unsigned long)GetCurrentProcessId());
  MultiByteToWideChar(CP_ACP, 0, base, -1, wide, MAX_PATH);
  GetModuleFileNameA(NULL, script, sizeof script);
  strcpy(strrchr(script, '\\') + 1, "run_gpg.sh");
  sprintf(name, "%s.in", base);
  WriteInput(name, arguments);
  sprintf(name, "%s.code", base);
  DeleteFileA(name);

  snprintf(command, sizeof command, "run_gpg.sh \"%s\" %s", unix_name(wide), arguments);
  if (!CreateProcessA(script, command, NULL, NULL, FALSE, 0, NULL, NULL, &startup, &process)) return 104;
  code = AwaitCode(name);
  DeleteFileA(name);
  sprintf(name, "%s.out", base);
  CopyOut(name);
  DeleteFileA(name);
  sprintf(name, "%s.in", base);
  DeleteFileA(name);
  return code;
}
