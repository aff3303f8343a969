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
    {1, nullptr, WithRoot<RootMail>},
    {2, nullptr, WithRoot<SmallHeader>},
    {3, "TAII", WithCurrent<CurrentHeader>},
    {4, "TAI", WithCurrent<CountCurrentHeader>},
    {15, "", WithRoot<State>},
    {16, nullptr, WithRoot<MailType>},
    {47, nullptr, WithRoot<Selection>},
    {52, nullptr, WithRoot<FileName>},
    {53, nullptr, WithRoot<FilePath>},
    {130, nullptr, WithRoot<FileOffset>},
    {240, nullptr, WithCurrent<AllCurrentHeader>},
    {241, nullptr, WithCurrent<SmallCurrentHeader>},
    {183, nullptr, WithRoot<Size>},
    {263, "", WithRoot<State>},
};

}  // namespace

const ServiceFamily kMailServices = {kServices, {}};

}  // namespace wrenfold
