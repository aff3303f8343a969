#include "host/mapi/outgoing_mail.h"

#include <algorithm>

#include "host/mime/mail_encoding.h"

namespace wrenfold {
namespace {

// A list of other programs as UTF-8. They may differ in how they write: each piece is read on its own.
// Neither Shift-JIS nor UTF-8 has a comma, quote or bracket within a character.
std::string ForeignList(std::string_view list, const Charsets& charsets) {
  std::string utf8;
  for (const std::string_view piece : AddressPieces(list)) {
    utf8 += (utf8.empty() ? "" : ", ") + charsets.ForeignToUtf8(piece);
  }
  return utf8;
}

void AddHeader(std::string& mail, std::string_view name, std::string_view value) {
  if (value.empty()) return;
  mail.append(name).append(": ").append(value).append("\r\n");
}

void AddWishes(std::string& mail, const CommandLineRequest& request, const Charsets& charsets) {
  if (request.command != MailCommand::kSendNow) AddHeader(mail, "X-Unsent", "1");
  AddHeader(mail, "X-Wrenfold-Command", WordOf(request.command));
  AddHeader(mail, "X-Wrenfold-Macro", UnstructuredValue(charsets.HostToUtf8(request.macro)));
  std::string options = request.use_template ? "template=1" : "";
  if (request.sign) options += options.empty() ? "sign=1" : " sign=1";
  AddHeader(mail, "X-Wrenfold-Options", options);
}

void AddBody(std::string& mail, std::string_view text, const std::vector<OutgoingFile>& files,
             const MailStamp& stamp) {
  const bool attached = std::ranges::any_of(files, [](const OutgoingFile& file) { return !file.is_missing; });
  if (!attached) {
    mail += TextPart(text);
    return;
  }
  std::vector<std::string> parts = {TextPart(text)};
  for (const OutgoingFile& file : files) {
    if (!file.is_missing) parts.push_back(FilePart(file.name, file.bytes));
  }
  mail += MultiPart("mixed", "=_" + stamp.unique, parts);
}

}  // namespace

std::string ComposeMail(const CommandLineRequest& request, const std::vector<OutgoingFile>& files,
                        const MailStamp& stamp, const Charsets& charsets) {
  std::string mail;
  AddHeader(mail, "From", AddressListValue(stamp.from));
  AddHeader(mail, "To", AddressListValue(ForeignList(request.to, charsets)));
  AddHeader(mail, "Cc", AddressListValue(ForeignList(request.cc, charsets)));
  AddHeader(mail, "Bcc", AddressListValue(ForeignList(request.bcc, charsets)));
  AddHeader(mail, "Subject", UnstructuredValue(charsets.HostToUtf8(request.subject.value_or(""))));
  AddHeader(mail, "Date", stamp.date);
  AddHeader(mail, "Message-ID", "<" + stamp.unique + "@wrenfold.invalid>");
  AddHeader(mail, "MIME-Version", "1.0");
  AddWishes(mail, request, charsets);
  for (const OutgoingFile& file : files) {
    if (file.is_missing) AddHeader(mail, "X-Wrenfold-Missing-File", UnstructuredValue(file.name));
  }
  AddBody(mail, charsets.HostToUtf8(request.body.value_or("")), files, stamp);
  return mail;
}

}  // namespace wrenfold
