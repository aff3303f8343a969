// The hand-over, for programs that load the library in a process of their own: no macro calls these two. Each example is
// a program behind <windows.h>, <stdio.h> and "wfinfo.h", linked with libWFINFO.dll.a.
// Needs: a C compiler, with wfinfo.h and libWFINFO.dll.a

// ## NotifyWrenfoldInfo
// Has messages in English, and takes them itself: without it they are Japanese and come in a box.
static void Told(const char* message) { printf("%s\n", message); }

int main(void) {
  struct {
    unsigned size, english;
    void (*told)(const char*);
  } info = {sizeof info, 1, Told};
  NotifyWrenfoldInfo(&info);
  CountEmailList(NULL);  // a mistake
}
//> WFINFO.DLL: String parameter missing or numeric parameter specified that should be string.

// ## GetWFInfoVersion
// Is this the library that the program was written for? And has its log written to the program's own: entry 32.
static void Log(const char* text, unsigned number) { printf("%u: %s\n", number, text); }
static void* services[33];

int main(void) {
  services[32] = (void*)Log;
  if (GetWFInfoVersion(services) == 18) DumpSmall("the interface is as expected");
}
//> 7178: the interface is as expected
