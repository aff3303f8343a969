#include "host/mail/draft_text.h"

#include <iterator>

#include "host/base/ascii.h"
#include "host/mail/header_edit.h"
#include "host/mail/headers.h"
#include "src/addresses/address_entry.h"

namespace wrenfold {
namespace {

struct KindRule {
  bool everyone;
  bool with_me;
  bool from_only;  // Reply-To does not count
};

// By the number of the kind.
constexpr KindRule kRules[] = {
    {false, false, false}, {false, false, false}, {true, false, false},  {true, true, false},
    {false, false, false}, {false, false, true},  {false, false, false}, {true, false, true},
    {true, true, true},    {true, false, false},  {false, false, true},  {true, false, true},
};

KindRule RuleOf(ReplyKind kind) {
  const auto number = static_cast<std::size_t>(kind);
  return number < std::size(kRules) ? kRules[number] : kRules[0];
}

std::string Value(std::string_view mail, std::string_view name) {
  return std::string(HeaderValue(mail, name).value_or(""));
}

bool Holds(std::string_view list, std::string_view address) {
  wfinfo::AddressReader reader(list);
  while (reader.Read()) {
    if (EqualsIgnoringCase(reader.entry().address, address)) return true;
  }
  return false;
}

// Adds the entries of `list` that are new and not one's own.
void AddOthers(std::string_view list, std::string_view own, const std::string& to, std::string& cc) {
  wfinfo::AddressReader reader(list);
  while (reader.Read()) {
    const std::string_view address = reader.entry().address;
    if (EqualsIgnoringCase(address, own) || Holds(to, address) || Holds(cc, address)) continue;
    cc += (cc.empty() ? "" : ", ") + std::string(reader.entry().text);
  }
}

// Where the line "{body}" stands; npos when there is none.
std::size_t BodyLine(std::string_view form) {
  constexpr std::string_view kMark = "{body}";
  for (std::size_t at = 0; at < form.size();) {
    const LineLength line = FirstLine(form.substr(at));
    if (form.substr(at, line.text) == kMark) return at;
    at += line.with_end;
  }
  return std::string_view::npos;
}

void AddPart(std::string& text, std::string_view part) {
  if (!text.empty() && !part.empty() && !text.ends_with('\n')) text += "\r\n";
  text += part;
}

}  // namespace

Recipients ReplyRecipients(std::string_view mail, ReplyKind kind, std::string_view own) {
  const KindRule rule = RuleOf(kind);
  Recipients recipients;
  if (!rule.from_only) recipients.to = Value(mail, "Reply-To");
  if (recipients.to.empty()) recipients.to = Value(mail, "From");
  if (!rule.everyone) return recipients;
  const std::string_view left_out = rule.with_me ? "" : own;
  AddOthers(Value(mail, "To"), left_out, recipients.to, recipients.cc);
  AddOthers(Value(mail, "Cc"), left_out, recipients.to, recipients.cc);
  return recipients;
}

std::string ReplyTo(std::string_view mail, std::string_view quoted_body) {
  const std::string reply_to = Value(mail, "Reply-To");
  const std::string subject = Value(mail, "Subject");
  const bool is_reply = EqualsIgnoringCase(std::string_view(subject).substr(0, 3), "Re:");
  const std::string id = Value(mail, "Message-ID");
  const std::string references = Value(mail, "References");
  std::string text;
  AddHeader(text, "To", reply_to.empty() ? Value(mail, "From") : reply_to);
  AddHeader(text, "Subject", is_reply ? subject : "Re: " + subject);
  if (!id.empty()) {
    AddHeader(text, "In-Reply-To", id);
    AddHeader(text, "References", references.empty() ? id : references + "\r\n " + id);
  }
  return text + "\r\n" + std::string(quoted_body);
}

std::string ForwardHeaders(std::string_view mail) {
  const std::string subject = Value(mail, "Subject");
  const bool is_forward = EqualsIgnoringCase(std::string_view(subject).substr(0, 4), "Fwd:");
  const std::string id = Value(mail, "Message-ID");
  std::string headers;
  AddHeader(headers, "To", "");
  AddHeader(headers, "Subject", is_forward ? subject : "Fwd: " + subject);
  if (!id.empty()) AddHeader(headers, "References", id);
  return headers + "\r\n";
}

std::string ForwardedText(std::string_view mail) {
  return ("----- Forwarded mail -----\r\n" + DisplayedHeaders(mail) + "\r\n").append(SplitMail(mail).body);
}

std::string ResentText(std::string_view mail, std::string_view recipient, bool as_bcc) {
  std::string text;
  AddHeader(text, as_bcc ? "Resent-Bcc" : "Resent-To", recipient);
  return text + std::string(mail);
}

std::string ComposeBody(std::string_view form, std::string_view body, std::string_view sign) {
  const std::size_t at = BodyLine(form);
  std::string text(form.substr(0, at));
  AddPart(text, body);
  if (at != form.npos) AddPart(text, form.substr(at + FirstLine(form.substr(at)).with_end));
  AddPart(text, sign);
  return text;
}

}  // namespace wrenfold
