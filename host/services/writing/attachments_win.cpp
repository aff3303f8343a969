// Attachments of the mail being written, and how their names stand in headers.
#include <filesystem>
#include <system_error>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/files/file_reasons.h"
#include "host/files/whole_file.h"
#include "host/mime/file_types.h"
#include "host/mime/mail_encoding.h"
#include "host/mime/parameters.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/terminal/terminal_text.h"
#include "host/writing/draft.h"

namespace wrenfold {
namespace {

std::string ToUtf8(std::string_view host) { return SystemCharsets().HostToUtf8(host); }

std::vector<Attachment>& Attachments(Request& request) { return request.state.writing.draft->attachments; }

// path
Answer Add(Request& request) {
  if (!request.HasText(0)) return request.Fail("no file is named");
  const std::filesystem::path path = PathFromUtf8(ToUtf8(request.Text(0)));
  auto bytes = ReadWholeFile(path);
  if (!bytes) return request.Fail(WhyUnreadable(path));
  const std::string name = SystemCharsets().Utf8ToHost(PathToUtf8(path.filename()));
  Attachments(request).push_back({name, std::string(TypeOfFile(name)), *std::move(bytes)});
  return Request::Done(true);
}

Answer Undo(Request& request) {
  if (Attachments(request).empty()) return request.Fail("the mail being written has no attachment");
  Attachments(request).pop_back();
  return Request::Done(true);
}

// The attachment of an index; null when there is none.
Attachment* AtIndex(Request& request) {
  const auto index = static_cast<std::size_t>(request.Number(0));  // a negative one is behind every list
  return index < Attachments(request).size() ? &Attachments(request)[index] : nullptr;
}

Answer NoSuch(Request& request) {
  return request.Fail("the mail being written has no attachment " + std::to_string(request.Number(0)));
}

// index, name
Answer Rename(Request& request) {
  Attachment* const attachment = AtIndex(request);
  if (attachment == nullptr) return NoSuch(request);
  const std::string name(Trim(request.Text(1)));
  if (name.empty()) return request.Fail("an attachment needs a name");
  if (ToUtf8(name).find_first_of("/\\:\r\n") != std::string::npos)
    return request.Fail("no file can be called " + Quoted(ToUtf8(name), 60) +
                        ": a name is no path and one line");
  attachment->file_name = name;
  return Request::Done(true);
}

// index
Answer Delete(Request& request) {
  Attachment* const attachment = AtIndex(request);
  if (attachment == nullptr) return NoSuch(request);
  Attachments(request).erase(Attachments(request).begin() + (attachment - Attachments(request).data()));
  return Request::Done(true);
}

Answer AddOfRoot(Request& request) {
  const auto& files = request.state.Message(request.state.root()).attachments;
  if (files.empty()) return request.None("the open mail has no attachments");
  Attachments(request).insert(Attachments(request).end(), files.begin(), files.end());
  return Request::AnswerNumber(static_cast<Slot>(files.size()));
}

// name
Answer Header(Request& request) {
  if (!request.HasText(0) || Trim(request.Text(0)).empty()) return request.Fail("an attachment needs a name");
  return request.AnswerText("Content-Disposition: attachment; " +
                            NameParameter("filename", ToUtf8(request.Text(0))));
}

// The value of Content-Disposition or Content-Type, with its name in front or without.
Answer FileName(Request& request) {
  std::string_view value = request.Text(0);
  for (const std::string_view name : {"Content-Disposition:", "Content-Type:"}) {
    if (EqualsIgnoringCase(value.substr(0, name.size()), name)) value.remove_prefix(name.size());
  }
  const ParameterizedValue parsed = ParseParameters(value, SystemCharsets());
  const std::u16string* file_name = FindParameter(parsed, "filename");
  if (file_name == nullptr) file_name = FindParameter(parsed, "name");
  if (file_name == nullptr) return request.None("names no file: " + Quoted(ToUtf8(value), 60));
  return request.AnswerText(SystemCharsets().ToHostText(*file_name));
}

constexpr Service kServices[] = {
    {58, "T", WithDraft<Add>, "attaches a file, as it is at this moment, to the mail being written"},
    {59, nullptr, WithDraft<Undo>, "takes the last attachment back"},
    {146, "IT", WithDraft<Rename>, "gives an attachment, by its number from 0, another name"},
    {147, "I", WithDraft<Delete>, "takes an attachment away, by its number from 0"},
    {208, "T", Header, "the Content-Disposition header of a file of that name"},
    {281, nullptr, WithRoot<WithDraft<AddOfRoot>>, "attaches the files of the open mail; their number"},
    {328, "T", FileName, "file name in the value of a Content-Disposition or Content-Type header"},
};

}  // namespace

const ServiceFamily kAttachmentsServices = {kServices, {}};

}  // namespace wrenfold
