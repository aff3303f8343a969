/* Functions for DllFunc: each shows that all ten values arrived, in order and in full width. */
#include <stdio.h>
#include <string.h>

__declspec(dllexport) long long Digits(long long a1, long long a2, long long a3, long long a4, long long a5,
                                       long long a6, long long a7, long long a8, long long a9,
                                       long long a10) {
  return a1 +
         10 * (a2 +
               10 * (a3 + 10 * (a4 + 10 * (a5 + 10 * (a6 + 10 * (a7 + 10 * (a8 + 10 * (a9 + 10 * a10))))))));
}
__declspec(dllexport) long long Wide(long long a1) { return a1; }
__declspec(dllexport) long long Length(const char* text) { return (long long)strlen(text); }
__declspec(dllexport) const char* Greeting(void) { return "hello from the library"; }
