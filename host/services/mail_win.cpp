// What the library asks about the mail that is open: its text, headers, files and state.
#include <filesystem>

#include "host/charset/charsets.h"
#include "host/mail/headers.h"
#include "host/mail/mail_store.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

std::string HostPath(const std::filesystem::path& path) {
  return SystemCharsets().Utf8ToHost(PathToUtf8(std::filesystem::absolute(path)));
}

StoredMail& Root(Request& request) { return request.state.Mail(request.state.root()); }
const std::string& RootText(Request& request) { return request.state.Message(request.state.root()).text; }

Answer RootMail(Request& request) { return Request::AnswerKept(RootText(request)); }

Answer SmallHeader(Request& request) { return request.AnswerText(DisplayedHeaders(RootText(request))); }
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

// All mails of the small host are received ones.
Answer MailType(Request&) { return Request::AnswerNumber(1); }

// Nothing is ever selected: the small host has no view to select in.
Answer Selection(Request& request) { return request.AnswerText(""); }

Answer FileName(Request& request) {
  return request.AnswerText(SystemCharsets().Utf8ToHost(PathToUtf8(Root(request).source.filename())));
}
Answer FilePath(Request& request) { return request.AnswerText(HostPath(Root(request).source)); }
Answer FileOffset(Request& request) { return Request::AnswerNumber(static_cast<Slot>(Root(request).offset)); }
Answer Size(Request& request) { return Request::AnswerNumber(static_cast<Slot>(Root(request).raw.size())); }

constexpr Service kServices[] = {
    {1, nullptr, WithRoot<RootMail>,
     "the root mail as host text: decoded headers, empty line, body ([mail files](mail-files.md))"},
    {2, nullptr, WithRoot<SmallHeader>,
     "the From, To, Cc, Subject and Date lines of the root mail, as far as it has them"},
    {3, "TAII", WithCurrent<CurrentHeader>,
     "fills the buffer with the value of a header of the current mail, cut to whole characters; answers its "
     "full length"},
    {4, "TAI", WithCurrent<CountCurrentHeader>, "number of headers of that name in the current mail"},
    {15, "", WithRoot<State>,
     "the state word of the open mail: folding off 0x4000, high priority 0x8000, attachments 0x10000, "
     "replied 0x40000, forwarded 0x80000, unread 0x100000, Message-ID 0x1000000, In-Reply-To 0x2000000, "
     "marked 0x4000000, Cc 0x8000000"},
    {16, nullptr, WithRoot<MailType>, "1: every mail is a received one"},
    {47, nullptr, WithRoot<Selection>, "\"\": there is nothing to select in"},
    {52, nullptr, WithRoot<FileName>, "name of the file that holds the root mail"},
    {53, nullptr, WithRoot<FilePath>, "full path of the file that holds the root mail"},
    {130, nullptr, WithRoot<FileOffset>, "offset of the root mail in its file: 0 but in an mbox"},
    {240, nullptr, WithCurrent<AllCurrentHeader>, "header block of the current mail"},
    {241, nullptr, WithCurrent<SmallCurrentHeader>,
     "the From, To, Cc, Subject and Date lines of the current mail, as far as it has them"},
    {183, nullptr, WithRoot<Size>, "bytes of the root mail in its file"},
    {263, "", WithRoot<State>, "the state word of the root mail, as 15"},
};

}  // namespace

const ServiceFamily kMailServices = {kServices, {}};

}  // namespace wrenfold
