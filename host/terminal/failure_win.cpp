#include "host/terminal/failure_win.h"

#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
void Tell(const std::string& notice) {
  Terminal& terminal = TheTerminal();
  // One write, so that the lines of programs that share a log do not mix.
  if (!terminal.ShowsErrors()) return terminal.Error("wrenfold: " + notice + "\n");
  terminal.ErrorInRed("wrenfold:");
  terminal.Error(" " + notice + "\n");
}

int Fail(const std::string& reason, int code) {
  Tell(reason);
  return code;
}

void Complain(const std::string& line) { Fail(Printable(line)); }

}  // namespace wrenfold
