/* Sends a mail through whatever program is the system's mail client: Simple MAPI in C.
 *
 *   send_mail ADDRESS SUBJECT TEXT [FILE]
 *
 * Build:  x86_64-w64-mingw32-gcc send_mail.c -o send_mail.exe      (or: cl send_mail.c)
 *
 * The program links to nothing of ours: mapi32.dll of the system finds the library that is registered (see
 * docs/simple-mapi.md). With MAPI_DIALOG in place of the 0 the user sees the mail before it goes. */
#include <windows.h>

#include <mapi.h>
#include <stdio.h>

int main(int count, char** words) {
  MapiRecipDesc recipient = {0};
  MapiFileDesc file = {0};
  MapiMessage message = {0};
  HMODULE mapi;
  LPMAPISENDMAIL send;
  ULONG code;

  if (count < 4) {
    fprintf(stderr, "send_mail ADDRESS SUBJECT TEXT [FILE]\n");
    return 2;
  }
  mapi = LoadLibraryA("mapi32.dll");
  send = mapi != NULL ? (LPMAPISENDMAIL)(void*)GetProcAddress(mapi, "MAPISendMail") : NULL;
  if (send == NULL) {
    fprintf(stderr, "this system has no Simple MAPI\n");
    return 1;
  }

  recipient.ulRecipClass = MAPI_TO;
  recipient.lpszAddress = words[1];
  message.lpszSubject = words[2];
  message.lpszNoteText = words[3];
  message.nRecipCount = 1;
  message.lpRecips = &recipient;
  if (count > 4) {
    file.nPosition = (ULONG)-1;   /* not inside the text */
    file.lpszPathName = words[4]; /* a full path; the file may be deleted once the call is back */
    message.nFileCount = 1;
    message.lpFiles = &file;
  }

  /* No session is needed. 0 tells that the mail was handed over, or that the user has been told why not. */
  code = send(0, 0, &message, 0, 0);
  printf("MAPISendMail: %lu\n", (unsigned long)code);
  return code == 0 ? 0 : 1;
}
