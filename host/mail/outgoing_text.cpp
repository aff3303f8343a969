#include "host/mail/outgoing_text.h"

#include <algorithm>

#include "host/base/ascii.h"
#include "host/mail/headers.h"
#include "host/mime/mail_encoding.h"
#include "host/mime/message.h"

namespace wrenfold {
namespace {

bool IsAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// One line without folds.
std::string Unfolded(std::string_view value) {
  std::string line;
  for (const char c : value) {
    if (!IsLineEnd(c)) line += c == '\t' ? ' ' : c;
  }
  return line;
}

constexpr std::string_view kAddressHeaders[] = {"From",      "Sender",     "Reply-To",    "To",
                                                "Cc",        "Bcc",        "Resent-From", "Resent-To",
                                                "Resent-Cc", "Resent-Bcc", "Errors-To"};

// A header with its line end. What is in ASCII stays as it was folded.
std::string EncodedHeader(const TextHeader& header, const Charsets& charsets) {
  if (IsAscii(header.lines) && header.lines.find('\x1A') == header.lines.npos)
    return std::string(header.lines);
  const std::string_view name = header.lines.substr(0, header.lines.find(':'));
  const bool is_list = std::ranges::any_of(
      kAddressHeaders, [name](std::string_view known) { return EqualsIgnoringCase(name, known); });
  const std::string value = charsets.HostToUtf8(Unfolded(header.Value()));
  return std::string(name) + ": " + (is_list ? AddressListValue(value) : UnstructuredValue(value)) + "\r\n";
}

// --- Finishing ---

// Whether the header at the front of `lines` is our own.
bool IsOurs(std::string_view line) {
  const std::string name = Lower(line.substr(0, line.find(':')));
  return name == "x-unsent" || name.starts_with("x-wrenfold-");
}

bool IsResent(const MessageParts& parts) {
  return !FindHeader(parts, "Resent-To").empty() || !FindHeader(parts, "Resent-Bcc").empty() ||
         !FindHeader(parts, "Resent-Cc").empty();
}

void AddWhereMissing(std::string& mail, const MessageParts& parts, const std::string& name,
                     const std::string& value) {
  if (!value.empty() && Trim(FindHeader(parts, name)).empty()) mail += name + ": " + value + "\r\n";
}

}  // namespace

std::string MailOfHostText(std::string_view host, const Charsets& charsets) {
  const MailText text = SplitMail(host);
  std::string mail;
  bool other_type = false;  // a macro has made the body what its own Content-Type says
  for (std::size_t at = 0;;) {
    const auto header = FieldAt(host, at);
    if (!header) break;
    at += header->lines.size();
    const bool is_type = header->Is("Content-Type");
    if (is_type && Lower(header->Value()).starts_with("text/plain")) continue;
    if (header->Is("MIME-Version") || header->Is("Content-Transfer-Encoding")) continue;
    other_type = other_type || is_type;
    mail += EncodedHeader(*header, charsets);
  }
  const std::string body = charsets.HostToUtf8(text.body);
  mail += "MIME-Version: 1.0\r\n";
  if (other_type) return mail + "Content-Transfer-Encoding: 8bit\r\n\r\n" + WithCrLf(body);
  return mail + TextPart(body);
}

std::string HeaderOfHostText(std::string_view line, const Charsets& charsets) {
  return EncodedHeader({0, line}, charsets);
}

bool HasRecipients(std::string_view raw) {
  const MessageParts parts = SplitMessage(raw);
  if (IsResent(parts)) return true;
  for (const std::string_view name : {"To", "Cc", "Bcc"}) {
    for (const HeaderField& field : parts.headers) {
      if (EqualsIgnoringCase(field.name, name) && field.value.find('@') != field.value.npos) return true;
    }
  }
  return false;
}

bool IsToBeSent(std::string_view raw) { return Trim(FindHeader(SplitMessage(raw), "X-Unsent")) != "1"; }

std::string FinishMail(std::string_view raw, const OutgoingStamp& stamp) {
  const MessageParts parts = SplitMessage(raw);
  const std::string kin = IsResent(parts) ? "Resent-" : "";
  std::string mail;
  AddWhereMissing(mail, parts, kin + "From", stamp.from);
  AddWhereMissing(mail, parts, kin + "Date", stamp.date);
  AddWhereMissing(mail, parts, kin + "Message-ID", "<" + stamp.unique + "@wrenfold.invalid>");
  bool ours = false;
  while (!raw.empty()) {
    const LineLength length = FirstLine(raw);
    if (length.text == 0) break;
    const std::string_view line = raw.substr(0, length.text);
    if (!IsBlank(line.front())) ours = IsOurs(line);
    if (!ours) mail.append(line).append("\r\n");
    raw.remove_prefix(length.with_end);
  }
  return mail + (raw.empty() ? "\r\n" : WithCrLf(raw));
}

}  // namespace wrenfold
