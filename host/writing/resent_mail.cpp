#include "host/writing/resent_mail.h"

#include <algorithm>
#include <vector>

#include "host/base/ascii.h"
#include "host/mail/headers.h"
#include "host/mime/mail_encoding.h"
#include "host/mime/message.h"
#include "host/writing/draft_file.h"

namespace wrenfold {
namespace {

constexpr std::string_view kPrefix = "Resent-";

bool IsOfBlock(std::string_view name) { return EqualsIgnoringCase(name.substr(0, kPrefix.size()), kPrefix); }

std::string_view NameOf(std::string_view lines) {
  const std::size_t colon = lines.find(':');
  return colon == lines.npos ? std::string_view() : Trim(lines.substr(0, colon));
}

std::vector<std::string_view> FieldsOf(std::string_view text) {
  std::vector<std::string_view> fields;
  std::size_t at = 0;
  while (const auto field = FieldAt(text, at)) {
    at += field->lines.size();
    // The last one may lack its line end.
    const std::string_view lines = field->lines;
    fields.push_back(lines.ends_with("\r\n") ? lines.substr(0, lines.size() - 2) : lines);
  }
  return fields;
}

// The headers of a mail that came, and what stands behind them.
std::string WithoutOldRecipients(std::string_view came) {
  std::string mail;
  while (!HeadersEndAt(came)) {
    const std::string_view lines = came.substr(0, FirstHeader(came).with_end);
    mail += OlderHeader(lines);
    came.remove_prefix(lines.size());
  }
  return mail.append(came);
}

bool IsAllBody(std::string_view came) {
  const MessageParts parts = SplitMessage(came);
  return parts.headers.empty() && parts.body.size() == came.size();
}

}  // namespace

bool NewestBlock::Takes(std::string_view name) {
  if (ended_) return false;
  const bool taken = IsOfBlock(name) && names_.insert(Lower(name)).second;
  if (!taken) ended_ = !names_.empty();
  return taken;
}

bool IsResentRecipient(std::string_view name) {
  return EqualsIgnoringCase(name, "Resent-To") || EqualsIgnoringCase(name, "Resent-Cc") ||
         EqualsIgnoringCase(name, "Resent-Bcc");
}

bool IsResent(const MessageParts& parts) {
  return std::ranges::any_of(parts.headers,
                             [](const HeaderField& field) { return IsResentRecipient(Trim(field.name)); });
}

std::string OlderHeader(std::string_view lines) {
  const std::string_view name = NameOf(lines);
  if (EqualsIgnoringCase(name, "Bcc") || EqualsIgnoringCase(name, "Resent-Bcc")) return "";
  return (IsResentRecipient(name) ? "X-" : "") + std::string(lines);
}

std::string MissingOfBlock(const NewestBlock& block, const MailStamp& stamp) {
  std::string headers;
  if (!block.Has("resent-from") && !stamp.from.empty())
    headers += "Resent-From: " + AddressListValue(stamp.from) + "\r\n";
  if (!block.Has("resent-date")) headers += "Resent-Date: " + stamp.date + "\r\n";
  if (!block.Has("resent-message-id"))
    headers += "Resent-Message-ID: <" + stamp.unique + "@wrenfold.invalid>\r\n";
  return headers;
}

std::string ResentMail(std::string_view block, std::string_view came, const MailStamp& stamp) {
  NewestBlock newest;
  for (const std::string_view field : FieldsOf(block)) newest.Takes(NameOf(field));
  std::string mail = MissingOfBlock(newest, stamp) + std::string(block);
  return IsAllBody(came) ? mail.append("\r\n").append(came) : mail + WithoutOldRecipients(came);
}

std::optional<std::string> BlockOf(const Draft& draft) {
  const HostMessage came = MakeHostMessage(*draft.resent);
  if (SplitMail(came.text).body != BodyOf(draft) || came.attachments != draft.attachments ||
      !draft.html.empty())
    return std::nullopt;
  const std::vector<std::string_view> old = FieldsOf(came.text);
  const std::vector<std::string_view> fields = FieldsOf(draft.text);
  std::size_t left = old.size();
  std::string block;
  // From the end: of two that are alike the upper one is new.
  for (std::size_t at = fields.size(); at-- > 0;) {
    if (left > 0 && fields[at] == old[left - 1]) {
      --left;
    } else if (IsOfBlock(NameOf(fields[at]))) {
      block.insert(0, std::string(fields[at]) + "\r\n");
    } else {
      return std::nullopt;
    }
  }
  return left == 0 ? std::optional(block) : std::nullopt;
}

std::optional<std::string> WhyNotAsItCame(const Draft& draft) {
  const auto block = BlockOf(draft);
  if (!block) {
    return "a mail that is resent goes on as it came, but this one was changed: MakeForward() makes one of "
           "your own";
  }
  std::set<std::string> names;
  for (const std::string_view field : FieldsOf(*block)) {
    const std::string_view name = NameOf(field);
    if (!names.insert(Lower(name)).second) return std::string(name) + " is there twice";
  }
  return std::nullopt;
}

std::string WrittenHeaders(std::string_view host) {
  std::string written;
  std::size_t at = 0;
  while (const auto field = FieldAt(host, at)) {
    at += field->lines.size();
    written += WrittenHeader(NameOf(field->lines), field->Value());
  }
  return written;
}

}  // namespace wrenfold
