// Simple MAPI, for other programs: they include <mapi.h>, link with the system's mapi32 and reach this library
// when it is registered (docs/simple-mapi.md). Each example is a program behind <windows.h>, <mapi.h> and <stdio.h>.
// A host runs; in its store lie 1-minutes.eml, 2-files.eml and 3-old.eml. minutes.txt lies beside the program.
// Needs: a C compiler; a host that serves (wrenfold --serve), registered as mail client, with the three mails in its store

// ## MAPILogon
// Is there a mail program? One that does not run is started, which may take ten seconds.
int main(void) {
  LHANDLE session = 0;
  if (MAPILogon(0, NULL, NULL, 0, 0, &session) == SUCCESS_SUCCESS) {
    printf("a host is there: %d\n", session != 0);
    MAPILogoff(session, 0, 0, 0);
  }
}
//> a host is there: 1

// ## MAPILogoff
// Ends the session; a host that ran before goes on, and a mail can be read without a session as well.
int main(void) {
  LHANDLE session = 0;
  char first[512];
  MAPILogon(0, NULL, NULL, 0, 0, &session);
  printf("%lu\n", (unsigned long)MAPILogoff(session, 0, 0, 0));
  if (MAPIFindNext(0, 0, NULL, NULL, 0, 0, first) == SUCCESS_SUCCESS) printf("the host goes on\n");
}
//> 0
//> the host goes on

// ## MAPISendMail
// Hands over a mail with a file, without a session. 0 does not say that it was sent: a box tells of what goes wrong.
int main(void) {
  char path[MAX_PATH];
  GetFullPathNameA("minutes.txt", sizeof path, path, NULL);
  MapiRecipDesc to = {
      .ulRecipClass = MAPI_TO, .lpszName = "Jo Example", .lpszAddress = "SMTP:jo@example.com"};
  MapiFileDesc file = {.nPosition = (ULONG)-1, .lpszPathName = path};
  MapiMessage mail = {.lpszSubject = "Minutes",
                      .lpszNoteText = "Here they are.",
                      .nRecipCount = 1,
                      .lpRecips = &to,
                      .nFileCount = 1,
                      .lpFiles = &file};
  printf("%lu\n", (unsigned long)MAPISendMail(0, 0, &mail, 0, 0));
}
//> 0

// ## MAPISendDocuments
// What an editor calls "send by mail": a new mail with the file opens, and the user writes the rest.
int main(void) {
  char path[MAX_PATH];
  GetFullPathNameA("minutes.txt", sizeof path, path, NULL);
  printf("%lu\n", (unsigned long)MAPISendDocuments(0, ";", path, NULL, 0));
}
//> 0

// ## MAPIFindNext
// Goes through the mails of the host's store, here the first two. An identifier needs 512 bytes of room.
int main(void) {
  char seed[512] = "", found[512];
  for (int i = 0; i < 2 && MAPIFindNext(0, 0, NULL, seed, 0, 0, found) == SUCCESS_SUCCESS; ++i) {
    printf("%s\n", found);
    lstrcpyA(seed, found);
  }
}
//> 1-minutes.eml
//> 2-files.eml

// ## MAPIReadMail
// Reads a mail without marking it as read (MAPI_PEEK), and without its files.
int main(void) {
  lpMapiMessage mail = NULL;
  if (MAPIReadMail(0, 0, "1-minutes.eml", MAPI_PEEK | MAPI_SUPPRESS_ATTACH, 0, &mail) != SUCCESS_SUCCESS)
    return 1;
  printf("%s\nfrom %s\nto %s\n", mail->lpszSubject, mail->lpOriginator->lpszAddress,
         mail->lpRecips[0].lpszAddress);
  MAPIFreeBuffer(mail);
  printf("none.eml: %lu\n", (unsigned long)MAPIReadMail(0, 0, "none.eml", 0, 0, &mail));
}
//> Minutes of the March meeting
//> from SMTP:alice@example.com
//> to SMTP:bob@example.org
//> none.eml: 17

// ## MAPIDeleteMail
// Deletes a mail for good. The second time there is none of that name: 17 is MAPI_E_INVALID_MESSAGE.
int main(void) {
  printf("%lu\n", (unsigned long)MAPIDeleteMail(0, 0, "3-old.eml", 0, 0));
  printf("%lu\n", (unsigned long)MAPIDeleteMail(0, 0, "3-old.eml", 0, 0));
}
//> 0
//> 17

// ## MAPIResolveName
// Takes what a user has typed apart into name and address; 14 is MAPI_E_UNKNOWN_RECIPIENT.
int main(void) {
  lpMapiRecipDesc recipient = NULL;
  if (MAPIResolveName(0, 0, "Jo Example <jo@example.com>", 0, 0, &recipient) == SUCCESS_SUCCESS) {
    printf("name %s, address %s\n", recipient->lpszName, recipient->lpszAddress);
    MAPIFreeBuffer(recipient);
  }
  printf("malformed: %lu\n", (unsigned long)MAPIResolveName(0, 0, "Jo <jo@example.com", 0, 0, &recipient));
}
//> name Jo Example, address jo@example.com
//> malformed: 14

// ## MAPIFreeBuffer
// One call frees a mail and all that it points to. A null pointer is fine.
int main(void) {
  lpMapiMessage mail = NULL;
  MAPIReadMail(0, 0, "1-minutes.eml", MAPI_PEEK | MAPI_ENVELOPE_ONLY, 0, &mail);
  printf("%lu\n", (unsigned long)MAPIFreeBuffer(mail));
}
//> 0

// ## MAPIAddress
// There is no address dialog: a box tells the user so, and the program goes on. Here a timer closes the box.
static void CALLBACK Close(HWND window, UINT message, UINT_PTR timer, DWORD time) {
  (void)window, (void)message, (void)timer, (void)time;
  PostMessageA(FindWindowA("#32770", NULL), WM_COMMAND, IDOK, 0);
}

int main(void) {
  ULONG count = 0;
  lpMapiRecipDesc chosen = NULL;
  SetTimer(NULL, 0, 200, Close);
  printf("%lu\n", (unsigned long)MAPIAddress(0, 0, NULL, 1, NULL, 0, NULL, 0, 0, &count, &chosen));
  printf("nobody is chosen: %d\n", chosen == NULL);
}
//> 0
//> nobody is chosen: 1

// ## MAPIDetails
// There is no dialog about a recipient either; the program goes on after the box.
static void CALLBACK Close(HWND window, UINT message, UINT_PTR timer, DWORD time) {
  (void)window, (void)message, (void)timer, (void)time;
  PostMessageA(FindWindowA("#32770", NULL), WM_COMMAND, IDOK, 0);
}

int main(void) {
  MapiRecipDesc recipient = {.ulRecipClass = MAPI_TO, .lpszName = "Jo", .lpszAddress = "jo@example.com"};
  SetTimer(NULL, 0, 200, Close);
  printf("%lu\n", (unsigned long)MAPIDetails(0, 0, &recipient, 0, 0));
}
//> 0

// ## MAPISaveMail
// Nothing can be saved in the host's store: the identifier stays as it is, although the result is 0.
static void CALLBACK Close(HWND window, UINT message, UINT_PTR timer, DWORD time) {
  (void)window, (void)message, (void)timer, (void)time;
  PostMessageA(FindWindowA("#32770", NULL), WM_COMMAND, IDOK, 0);
}

int main(void) {
  char identifier[512] = "";
  MapiMessage mail = {.lpszSubject = "Draft", .lpszNoteText = "To be written."};
  SetTimer(NULL, 0, 200, Close);
  printf("%lu\n", (unsigned long)MAPISaveMail(0, 0, &mail, 0, 0, identifier));
  printf("identifier: \"%s\"\n", identifier);
}
//> 0
//> identifier: ""
