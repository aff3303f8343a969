/* A small archiver: "a ARCHIVE FILE" stores one file in a new ZIP archive, uncompressed. Anything else fails with 1.
 * The output tells what it was asked; "flood" fills the whole output buffer. */
#include <windows.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static unsigned Crc32(const unsigned char* bytes, size_t size) {
  unsigned crc = 0xFFFFFFFF;
  for (size_t i = 0; i < size; ++i) {
    crc ^= bytes[i];
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (0xEDB88320 & (0 - (crc & 1)));
  }
  return ~crc;
}

static void Put(FILE* file, unsigned value, int bytes) {
  for (; bytes > 0; --bytes, value >>= 8) fputc((int)(value & 0xFF), file);
}

static int Pack(const char* archive, const char* name) {
  static unsigned char bytes[1 << 20];
  FILE* in = fopen(name, "rb");
  if (in == NULL) return 2;
  const size_t size = fread(bytes, 1, sizeof bytes, in);
  fclose(in);
  FILE* out = fopen(archive, "wb");
  if (out == NULL) return 3;
  const char* base = strrchr(name, '\\') != NULL ? strrchr(name, '\\') + 1 : name;
  const unsigned crc = Crc32(bytes, size), length = (unsigned)strlen(base);
  Put(out, 0x04034B50, 4);
  Put(out, 10, 2);
  Put(out, 0, 2);
  Put(out, 0, 2);
  Put(out, 0, 2);
  Put(out, 0x21, 2);
  Put(out, crc, 4);
  Put(out, (unsigned)size, 4);
  Put(out, (unsigned)size, 4);
  Put(out, length, 2);
  Put(out, 0, 2);
  fwrite(base, 1, length, out);
  fwrite(bytes, 1, size, out);
  const unsigned directory = 30 + length + (unsigned)size;
  Put(out, 0x02014B50, 4);
  Put(out, 10, 2);
  Put(out, 10, 2);
  Put(out, 0, 2);
  Put(out, 0, 2);
  Put(out, 0, 2);
  Put(out, 0x21, 2);
  Put(out, crc, 4);
  Put(out, (unsigned)size, 4);
  Put(out, (unsigned)size, 4);
  Put(out, length, 2);
  Put(out, 0, 2);
  Put(out, 0, 2);
  Put(out, 0, 2);
  Put(out, 0, 2);
  Put(out, 0, 4);
  Put(out, 0, 4);
  fwrite(base, 1, length, out);
  Put(out, 0x06054B50, 4);
  Put(out, 0, 2);
  Put(out, 0, 2);
  Put(out, 1, 2);
  Put(out, 1, 2);
  Put(out, 46 + length, 4);
  Put(out, directory, 4);
  Put(out, 0, 2);
  return fclose(out) == 0 ? 0 : 4;
}

__declspec(dllexport) int WINAPI ENTRY(HWND window, LPCSTR command_line, LPSTR output, DWORD size) {
  char archive[260], name[260];
  (void)window;
  if (command_line == NULL) return 1;
  if (strcmp(command_line, "flood") == 0) {
    memset(output, 'x', size);
    return 0;
  }
  if (strncmp(command_line, "call ", 5) ==
      0) { /* the function at this address, as a macro behind a dialog would */
    int (*function)(void) = (int (*)(void))(size_t)strtoull(command_line + 5, NULL, 16);
    function();
    memset(output, 'y', size - 1);
    return 7;
  }
  snprintf(output, size, "window %d, room %u: %s", window != NULL, (unsigned)size, command_line);
  return sscanf(command_line, "a %259s %259s", archive, name) == 2 ? Pack(archive, name) : 1;
}
