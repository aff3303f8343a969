#include "host/terminal/failure_win.h"

#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
void Tell(const std::string& notice) {
  TheTerminal().ErrorInRed("wrenfold:");
  TheTerminal().Error(" " + notice + "\n");
}

int Fail(const std::string& reason, int code) {
  Tell(reason);
  return code;
}

void Complain(const std::string& line) { Fail(Printable(line)); }

}  // namespace wrenfold
