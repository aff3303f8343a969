#include "host/terminal/failure_win.h"

#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {

int Fail(const std::string& reason, int code) {
  TheTerminal().Error("wrenfold: " + reason + "\n");
  return code;
}

void Complain(const std::string& line) { Fail(Printable(line)); }

}  // namespace wrenfold
