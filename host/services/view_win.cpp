// Mails in a window of their own.
#include "host/mail/draft_file.h"
#include "host/requests/request_server_win.h"
#include "host/services/draft_win.h"
#include "host/services/services_win.h"
#include "host/windows/frame_win.h"

namespace wrenfold {
namespace {

// A draft becomes the mail being written again.
Answer OpenMail(Request& request) {
  const std::size_t root = request.state.root();
  if (IsDraftFile(request.state.Mail(root).raw)) return ReopenDraft(request, root);
  Windows::OpenView();
  return Request::Done(true);
}

Answer OpenView(Request& request) {
  if (!request.state.HasRoot()) return {};
  Windows::OpenView();
  return Request::AnswerNumber(1);
}

constexpr Command kCommands[] = {
    {40038, WithRoot<OpenMail>, "from then on the outer view is asked, no longer the frame"},
    {40134, OpenView, "from then on the outer view is asked, no longer the frame"},
};

}  // namespace

const ServiceFamily kViewServices = {{}, kCommands};

}  // namespace wrenfold
