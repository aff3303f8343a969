/* Uses the desktop, shows nothing, and never ends. Wine makes its desktop with the first program that uses it, a
 * child of that program, and ends it a second after the last: with this program in the background it is made once, and
 * no test waits for the end of a desktop that holds its output. */
#include <windows.h>

int main(void) {
  MSG message;
  GetDesktopWindow();
  while (GetMessageA(&message, NULL, 0, 0) > 0) DispatchMessageA(&message);
  return 0;
}
