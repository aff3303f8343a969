// Mails in a window of their own.
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/windows/frame_win.h"

namespace wrenfold {
namespace {

Answer OpenView(Request& request) {
  if (!request.state.HasRoot()) return {};
  Windows::OpenView();
  return Request::AnswerNumber(1);
}

constexpr Command kCommands[] = {
    {40038, OpenView, "from then on the outer view is asked, no longer the frame"},
    {40134, OpenView, "from then on the outer view is asked, no longer the frame"},
};

}  // namespace

const ServiceFamily kViewServices = {{}, kCommands};

}  // namespace wrenfold
