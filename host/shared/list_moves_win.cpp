#include "host/shared/list_moves_win.h"

#include "host/charset/charsets.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {

Answer OpenInList(Request& request, std::size_t mail) {
  if (!request.state.Open(mail)) return request.Fail("there is no mail " + std::to_string(mail));
  if (request.state.list.speaks) {
    TheTerminal().Error(
        "speech: " + Printable(SystemCharsets().HostToUtf8(ListLineText(request.state, mail, 0))) + "\n");
  }
  return Request::Done(true);
}

}  // namespace wrenfold
