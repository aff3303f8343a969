// The mail being written, and the headers of the current mail. A mail being written lives in memory only;
// nothing is ever sent. Changed headers of a received mail are forgotten with the program.
#include "host/mail/header_edit.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

// name, value
Answer Set(Request& request) {
  return Request::Done(SetHeader(request.state.EditCurrent(), request.Text(0), request.Text(1), 0));
}
Answer Add(Request& request) {
  AddHeader(request.state.EditCurrent(), request.Text(0), request.Text(1));
  return Request::Done(true);
}
// name, value, occurrence; a negative occurrence becomes a number behind the last.
Answer SetOccurrence(Request& request) {
  const auto n = static_cast<std::size_t>(request.Number(2));
  return Request::Done(SetHeader(request.state.EditCurrent(), request.Text(0), request.Text(1), n));
}
// name, occurrence
Answer Delete(Request& request) {
  const auto n = static_cast<std::size_t>(request.Number(1));
  return Request::Done(DeleteHeader(request.state.EditCurrent(), request.Text(0), n));
}

Answer Purpose(Request& request) {
  if (!request.state.HasDraft()) return {};
  return Request::AnswerNumber(static_cast<Slot>(request.state.draft_purpose()));
}

constexpr Service kServices[] = {
    {43, "TT", WithCurrent<Set>, "sets a header of the current mail in memory: 1 when it was done"},
    {44, "TT", WithCurrent<Add>, "adds a header to the current mail in memory: 1"},
    {90, "TTI", WithCurrent<SetOccurrence>,
     "sets one of several headers of a name: 1 when it was done; the number of the last plus one adds one"},
    {94, "TI", WithCurrent<Delete>, "removes a header of the current mail in memory: 1 when it was done"},
    {169, nullptr, Purpose, "what the mail being written is: 0 new mail, 1 reply, 2 forward"},
};

}  // namespace

const ServiceFamily kWritingServices = {kServices, {}};

}  // namespace wrenfold
