/* A program that takes mails, as sendmail does: send_peer OUT CODE [FILE ...]
 *
 * Writes FILE, or its standard input, to OUT, tells its words on standard output and ends with CODE. With the word
 * "sleep" for CODE it waits for a file "stop" in its folder, at most a minute. */
#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

static int Keep(FILE* from, const char* to) {
  FILE* out = fopen(to, "wb");
  char bytes[4096];
  size_t count;
  if (from == NULL || out == NULL) return 0;
  while ((count = fread(bytes, 1, sizeof bytes, from)) > 0) fwrite(bytes, 1, count, out);
  return fclose(out) == 0;
}

int main(int count, char** words) {
  int i;
  if (count < 3) return 90;
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  printf("send_peer: %d words\n", count - 1);
  for (i = 1; i < count; ++i) printf("word %d: %s\n", i, words[i]);
  fflush(stdout);
  if (!Keep(count > 3 ? fopen(words[3], "rb") : stdin, words[1])) return 91;
  for (i = 0; i < 600 && strcmp(words[2], "sleep") == 0; ++i) {
    if (GetFileAttributesA("stop") != INVALID_FILE_ATTRIBUTES) return 92;
    Sleep(100);
  }
  return atoi(words[2]);
}
