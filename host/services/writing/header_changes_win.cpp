// Changes of the headers of the current mail, or of all that are selected.
#include "host/charset/charsets.h"
#include "host/mail/header_edit.h"
#include "host/mail/headers.h"
#include "host/mail/missing_mail.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/changed_mail_win.h"
#include "host/shared/selection_win.h"
#include "host/shared/written_mail_win.h"
#include "host/terminal/terminal_text.h"
#include "host/writing/draft_file.h"

namespace wrenfold {
namespace {

std::string_view Name(const Request& request) { return request.Text(0); }

// Why a header of this name is not written, if it is not.
std::optional<std::string> WhyNoHeader(std::string_view name) {
  if (WithoutColon(name).empty()) return "a header needs a name";
  if (CanBeHeader(name)) return std::nullopt;
  return "no header can be called " + Quoted(SystemCharsets().HostToUtf8(name), 60) +
         ": names are ASCII without blanks and colons";
}

Answer Changed(Request& request, bool done) {
  if (!done)
    return request.Fail("no such header to change: " +
                        Quoted(SystemCharsets().HostToUtf8(Name(request)), 60));
  if (!request.state.HasDraft()) TellHeaderChange(request.state, request.state.root());
  return Request::Done(true);
}

// A copy is changed, so that a mail in which nothing changes stays as it is.
template <class Change>
Answer ChangeCurrent(Request& request, Change change) {
  if (request.state.HasDraft()) return Changed(request, change(request.state.EditCurrent()));
  std::string text = request.state.CurrentText();
  const bool done = change(text);
  if (done) request.state.EditCurrent() = std::move(text);
  return Changed(request, done);
}

template <class Change>
Answer WriteCurrent(Request& request, Change change) {
  if (const auto reason = WhyNoHeader(Name(request))) return request.Fail(*reason);
  return ChangeCurrent(request, change);
}

// name, value
Answer Set(Request& request) {
  return WriteCurrent(request,
                      [&](std::string& text) { return SetHeader(text, Name(request), request.Text(1), 0); });
}
Answer Add(Request& request) {
  return WriteCurrent(request, [&](std::string& text) {
    AddHeader(text, Name(request), request.Text(1));
    return true;
  });
}
// name, value, occurrence; a negative occurrence becomes a number behind the last.
Answer SetOccurrence(Request& request) {
  const auto n = static_cast<std::size_t>(request.Number(2));
  return WriteCurrent(request,
                      [&](std::string& text) { return SetHeader(text, Name(request), request.Text(1), n); });
}
// name, occurrence; those that no program may write are deleted too.
Answer Delete(Request& request) {
  if (WithoutColon(Name(request)).empty()) return request.Fail("a header needs a name");
  const auto n = static_cast<std::size_t>(request.Number(1));
  return ChangeCurrent(request, [&](std::string& text) { return DeleteHeader(text, Name(request), n); });
}

// name, value: in each selected mail, in memory until it is saved.
Answer SetInSelected(Request& request) {
  if (const auto reason = WhyNoHeader(Name(request))) return request.Fail(*reason);
  const std::vector<std::size_t> mails = SelectedMails(request);
  if (mails.empty()) return request.Fail(kNoMailSelected);
  for (const std::size_t mail : mails) {
    SetHeader(request.state.EditText(mail), Name(request), request.Text(1), 0);
    TellHeaderChange(request.state, mail);
  }
  return Request::AnswerNumber(static_cast<Slot>(mails.size()));
}

constexpr Service kServices[] = {
    {43, "TT", WithCurrent<Set>, "sets the first header of a name in the current mail, or adds it"},
    {44, "TT", WithCurrent<Add>, "adds a header to the current mail"},
    {90, "TTI", WithCurrent<SetOccurrence>,
     "sets a header by its number; the number of the last plus one adds one; 1 when it was done"},
    {94, "TI", WithCurrent<Delete>, "deletes a header by its number"},
    {212, "TT", SetInSelected,
     "sets a header in each selected mail, in memory until the mail is saved; the number of mails"},
};

}  // namespace

const ServiceFamily kHeaderChangesServices = {kServices, {}};

}  // namespace wrenfold
