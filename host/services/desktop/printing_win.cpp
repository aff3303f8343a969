// Printing: no printer is used, what would be printed is listed on standard error.
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/selection_win.h"
#include "host/terminal/shown_host_text.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

std::string AttachmentNames(HostState& state, std::size_t mail) {
  std::string names;
  for (const Attachment& attachment : state.Message(mail).attachments) {
    names += (names.empty() ? "" : ", ") + attachment.file_name;
  }
  return names;
}

Answer Begin(Request& request) {
  bool& printing = request.state.commands.application.printing;
  if (printing) return request.Fail("a print job has begun already");
  return Request::Done(printing = true);
}

Answer End(Request& request) {
  HostState& state = request.state;
  if (!state.commands.application.printing) return request.Fail("no print job was begun");
  state.commands.application.printing = false;
  for (const std::size_t mail : SelectedMails(request)) {
    const std::string names = AttachmentNames(state, mail);
    TheTerminal().Error("would print: " + ShownHostText(state.Header(mail, "Subject")) +
                        (names.empty() ? "" : " (attachments: " + ShownHostText(names) + ")") + "\n");
  }
  return Request::Done(true);
}

Answer AttachmentList(Request& request) {
  return request.AnswerText(AttachmentNames(request.state, request.state.root()));
}

constexpr Service kServices[] = {
    {178, nullptr, Begin, "begins a print job; 0 when one has begun"},
    {179, nullptr, End, "ends it: prints `would print: SUBJECT` on standard error for each selected mail"},
    {298, nullptr, WithRoot<AttachmentList>,
     "names of the open mail's attachments, with commas between them"},
};

}  // namespace

const ServiceFamily kPrintingServices = {kServices, {}};

}  // namespace wrenfold
