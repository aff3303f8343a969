// What the library asks about the mail that is open: its text, headers, files and state.
#include <filesystem>

#include "charset.h"
#include "header_lookup.h"
#include "mail_store.h"
#include "request_server_win.h"

namespace wrenfold {
namespace {

std::string HostPath(const std::filesystem::path& path) {
  return SystemCharsets().Utf8ToHost(PathToUtf8(std::filesystem::absolute(path)));
}

StoredMail& Root(Request& request) { return request.state.Mail(request.state.root()); }
const std::string& RootText(Request& request) { return request.state.Message(request.state.root()).text; }

Answer RootMail(Request& request) { return Request::AnswerKept(RootText(request)); }

Answer SmallHeader(Request& request) { return request.AnswerText(DisplayedHeaders(RootText(request))); }

// name, buffer, its size, occurrence: fills the buffer and answers the length of the whole value.
Answer CurrentHeader(Request& request) {
  const Slot n = request.Number(3);
  const auto value = HeaderValue(RootText(request), request.Text(0), n < 0 ? 0 : static_cast<std::size_t>(n));
  request.FillBuffer(1, 2, value.value_or(""));
  return Request::AnswerNumber(static_cast<Slot>(value.value_or("").size()));
}

Answer CountCurrentHeader(Request& request) {
  return Request::AnswerNumber(static_cast<Slot>(CountHeaders(RootText(request), request.Text(0))));
}

Answer Folder(Request& request) {
  return request.AnswerText(HostPath(request.state.FolderOf(request.state.root()).path));
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

// Runs `kAnswer` when a mail is open; else the answer is 0.
template <Handler kAnswer>
Answer WithMail(Request& request) {
  return request.state.HasRoot() ? kAnswer(request) : Answer{};
}

constexpr Service kServices[] = {
    {1, nullptr, WithMail<RootMail>},     {2, nullptr, WithMail<SmallHeader>},
    {3, "TAII", WithMail<CurrentHeader>}, {4, "TAI", WithMail<CountCurrentHeader>},
    {7, nullptr, WithMail<Folder>},       {15, "", WithMail<State>},
    {16, nullptr, WithMail<MailType>},    {42, nullptr, WithMail<Folder>},
    {47, nullptr, WithMail<Selection>},   {52, nullptr, WithMail<FileName>},
    {53, nullptr, WithMail<FilePath>},    {130, nullptr, WithMail<FileOffset>},
    {183, nullptr, WithMail<Size>},       {263, "", WithMail<State>},
};

const ServiceFamily kFamily(kServices, {});

}  // namespace
}  // namespace wrenfold
