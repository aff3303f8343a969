// What the library asks about the mail that is open: its text, headers, files and state.
#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/mail/headers.h"
#include "host/mail/mail_store.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/folder_paths_win.h"
#include "host/writing/draft_file.h"

namespace wrenfold {
namespace {

StoredMail& Root(Request& request) { return request.state.Mail(request.state.root()); }

Answer RootMail(Request& request) { return Request::AnswerKept(request.state.RootText()); }

Answer SmallHeader(Request& request) {
  return request.AnswerText(DisplayedHeaders(request.state.RootText()));
}
Answer SmallCurrentHeader(Request& request) {
  return request.AnswerText(DisplayedHeaders(request.state.CurrentText()));
}

// The header block up to the empty line.
Answer AllCurrentHeader(Request& request) {
  return request.AnswerText(std::string(SplitMail(request.state.CurrentText()).headers));
}

// name, buffer, its size, occurrence: fills the buffer and answers the length of the whole value.
Answer CurrentHeader(Request& request) {
  const Slot n = request.Number(3);
  const auto value =
      HeaderValue(request.state.CurrentText(), request.Text(0), n < 0 ? 0 : static_cast<std::size_t>(n));
  request.FillBuffer(1, 2, value.value_or(""));
  return Request::AnswerNumber(static_cast<Slot>(value.value_or("").size()));
}

Answer CountCurrentHeader(Request& request) {
  return Request::AnswerNumber(static_cast<Slot>(CountHeaders(request.state.CurrentText(), request.Text(0))));
}

Answer State(Request& request) {
  return Request::AnswerNumber(request.state.StateWord(request.state.root()));
}

Answer CurrentState(Request& request) { return Request::AnswerNumber(request.state.CurrentState()); }

constexpr Slot kReceived = 1;
constexpr Slot kWritten = 2;

Answer MailType(Request& request) {
  const bool written = request.state.HasDraft() || IsDraftFile(Root(request).raw);
  return Request::AnswerNumber(written ? kWritten : kReceived);
}

// All of the text or nothing: there is no view to select in with the mouse.
Answer SelectedText(Request& request) {
  const bool selected = request.state.view.all_text_selected;
  return request.AnswerText(selected ? std::string(SplitMail(request.state.RootText()).body) : "");
}

Answer FileName(Request& request) {
  return request.AnswerText(SystemCharsets().Utf8ToHost(PathToUtf8(Root(request).source.filename())));
}
Answer FilePath(Request& request) { return request.AnswerText(HostPath(Root(request).source)); }
Answer FileOffset(Request& request) { return Request::AnswerNumber(static_cast<Slot>(Root(request).offset)); }
Answer Size(Request& request) { return Request::AnswerNumber(static_cast<Slot>(Root(request).raw.size())); }

constexpr Service kServices[] = {
    {1, nullptr, WithRoot<RootMail>, "the whole root mail as host text"},
    {2, nullptr, WithRoot<SmallHeader>, "From, To, Cc, Subject and Date of the root mail"},
    {3, "TAII", WithCurrent<CurrentHeader>,
     "header of the current mail: length of the whole value; fills the buffer"},
    {4, "TAI", WithCurrent<CountCurrentHeader>, "how often the current mail has it"},
    {15, "", WithCurrent<CurrentState>, "the [state word](#the-state-word) of the current mail"},
    {16, nullptr, WithCurrent<MailType>,
     "of the current mail: 2 when it is being written or a draft, else 1, received"},
    {47, nullptr, WithRoot<SelectedText>, "the body after `SelectAllInCurrentPane` in the mail, else \"\""},
    {52, nullptr, WithRoot<FileName>, "of the file that holds the root mail"},
    {53, nullptr, WithRoot<FilePath>, "its full path"},
    {130, nullptr, WithRoot<FileOffset>, "where the root mail begins in its file: 0 but in an mbox"},
    {240, nullptr, WithCurrent<AllCurrentHeader>, "header block of the current mail"},
    {241, nullptr, WithCurrent<SmallCurrentHeader>, "From, To, Cc, Subject and Date of the current mail"},
    {183, nullptr, WithRoot<Size>, "bytes of the root mail in its file"},
    {263, "", WithRoot<State>, "the [state word](#the-state-word) of the root mail"},
};

}  // namespace

const ServiceFamily kMailServices = {kServices, {}};

}  // namespace wrenfold
