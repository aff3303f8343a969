/* The texts of WFINFO.dll in C: code page 932, and an escape of four bytes for a character that it lacks.
 *
 * Both functions give memory that the caller frees, null when there is none. */
#ifndef HOST_TEXT_H
#define HOST_TEXT_H

#include <windows.h>

#include <stdlib.h>
#include <string.h>

/* Whether a host gives the character two columns, where it folds lines. The few wide ones from U+0100 to U+2FFF, such as
 * a cup of coffee, count as narrow here: the bindings for other languages have the whole table. */
static int IsFullWidth(wchar_t unit) {
  return (unit >= 0x3000 && unit <= 0x9FFF) || (unit >= 0xAC00 && unit <= 0xD7FF) ||
         (unit >= 0xE000 && unit <= 0xFAFF) || (unit >= 0xFF01 && unit <= 0xFF60) ||
         (unit >= 0xFFE0 && unit <= 0xFFE6);
}

/* One UTF-16 unit as a text of the library; `host` has room for four bytes. Returns how many it takes. */
static int UnitToHost(wchar_t unit, char* host) {
  BOOL lost = FALSE;
  const int size =
      unit == 0x1A ? 0 : WideCharToMultiByte(932, WC_NO_BEST_FIT_CHARS, &unit, 1, host, 4, NULL, &lost);
  if (size > 0 && !lost) return size;
  host[0] = 0x1A;
  host[1] = (char)(0x80 | (unit & 0x7F));
  host[2] = (char)(0x80 | (unit >> 8 & 0x7F));
  host[3] = (char)(0x84 | (unit >> 7 & 1) | (unit >> 15 & 1) << 1 | (IsFullWidth(unit) ? 8 : 0));
  return 4;
}

/* The next character of a text of the library, as at most two units; returns how many bytes it takes. */
static int HostToUnits(const char* host, wchar_t* units, int* count) {
  const unsigned char* const byte = (const unsigned char*)host;
  const int is_lead = (byte[0] >= 0x81 && byte[0] <= 0x9F) || (byte[0] >= 0xE0 && byte[0] <= 0xFC);
  const int size = is_lead && byte[1] != 0 ? 2 : 1;
  if (byte[0] == 0x1A && byte[1] & 0x80 && byte[2] & 0x80 && (byte[3] & 0x74) == 0x04) {
    *units =
        (wchar_t)((byte[1] & 0x7F) | (byte[3] & 1) << 7 | (byte[2] & 0x7F) << 8 | (byte[3] >> 1 & 1) << 15);
    *count = 1;
    return 4;
  }
  *count = MultiByteToWideChar(932, 0, host, size, units, 2);
  return size;
}

/* UTF-8 to the library's text. */
static char* ToHostText(const char* utf8) {
  const int count = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, NULL, 0);
  wchar_t* const wide = malloc((size_t)count * sizeof *wide);
  char* const host = malloc((size_t)count * 4);
  char* end = host;
  if (wide != NULL && host != NULL) {
    MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide, count);
    for (int n = 0; n < count; ++n) end += UnitToHost(wide[n], end);
  }
  free(wide);
  return wide != NULL ? host : NULL;
}

/* The library's text to UTF-8. */
static char* FromHostText(const char* host) {
  wchar_t* const wide = malloc((strlen(host) + 1) * sizeof *wide);
  int units = 0, count = 0, size = 0;
  char* utf8 = NULL;
  if (wide == NULL) return NULL;
  for (; *host != '\0'; units += count) host += HostToUnits(host, wide + units, &count);
  wide[units++] = 0;
  size = WideCharToMultiByte(CP_UTF8, 0, wide, units, NULL, 0, NULL, NULL);
  utf8 = malloc((size_t)size);
  if (utf8 != NULL) WideCharToMultiByte(CP_UTF8, 0, wide, units, utf8, size, NULL, NULL);
  free(wide);
  return utf8;
}

#endif
