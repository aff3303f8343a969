#include "host/library/draft_functions_win.h"

#include "host/charset/charsets.h"
#include "host/charset/names.h"
#include "host/mail/missing_mail.h"
#include "host/mail/named_address.h"
#include "host/terminal/terminal_text.h"

namespace wrenfold {
namespace {

using macro::Complaint;
using macro::Value;

DraftSide* g_side = nullptr;

std::string_view TextOf(const Value& value) { return value.IsText() ? std::string_view(value.Text()) : ""; }

// 1, or 0 with the reason.
HostResult Done(HostCall& call, std::optional<std::string> reason) {
  if (reason) call.Fail(*std::move(reason));
  return Value(std::int64_t{call.failed ? 0 : 1});
}

HostResult TextOr(HostCall& call, std::optional<std::string> text, const char* reason) {
  if (!text) call.Fail(reason);
  return Value(std::move(text).value_or(""));
}

HostResult Body(HostCall& call) {
  return TextOr(call, g_side == nullptr ? std::nullopt : g_side->Body(), kNeitherMail);
}

HostResult SetBody(HostCall& call) {
  if (!call.given[0].IsText()) return Complaint{"HostSetBody takes a text"};
  return Done(call, g_side == nullptr ? kNeitherMail : g_side->SetBody(call.given[0].Text()));
}

HostResult Html(HostCall& call) {
  return TextOr(call, g_side == nullptr ? std::nullopt : g_side->Html(), kNoWrittenMail);
}

HostResult SetHtml(HostCall& call) {
  if (!call.given[0].IsText()) return Complaint{"HostSetHtml takes a text"};
  return Done(call, g_side == nullptr ? kNoWrittenMail : g_side->SetHtml(call.given[0].Text()));
}

HostResult Attachments(HostCall&) {
  std::string names;
  if (g_side != nullptr) {
    for (const std::string& name : g_side->Attachments()) names += (names.empty() ? "" : "\n") + name;
  }
  return Value(std::move(names));
}

HostResult GoToLine(HostCall& call) {
  const Value& line = call.given[0];
  if (line.IsText() || line.Number() < 0)
    return Complaint{"HostGoToLine takes the number of a line, 0 for the first"};
  return Done(call,
              g_side == nullptr ? kNoWrittenMail : g_side->GoToLine(static_cast<std::size_t>(line.Number())));
}

HostResult Address(HostCall& call) {
  const Value& address = call.given[1];
  if (address.IsText()) {
    if (IsOneAddress(address.Text())) return Value(NamedAddress(TextOf(call.given[0]), address.Text()));
    const std::string shown = Quoted(SystemCharsets().HostToUtf8(address.Text()), 60);
    return TextOr(call, std::nullopt, (shown + " is not one address").c_str());
  }
  return Complaint{"HostAddress takes a name, which may be \"\", and an address"};
}

// Bytes of another program, such as a page that Inet_Read gave.
HostResult Decode(HostCall& call) {
  const std::string charset = SystemCharsets().HostToUtf8(TextOf(call.given[1]));
  if (!charset.empty() && FindCharset(charset) == nullptr) {
    return TextOr(call, std::nullopt, ("no such character set: " + charset).c_str());
  }
  const std::string_view bytes = TextOf(call.given[0]);
  return Value(SystemCharsets().ToHostText(SystemCharsets().DecodeDeclared(charset, bytes)));
}

constexpr HostFunction kFunctions[] = {
    {"HostBody", 0, Body, "HostBody()", "Text of the mail being written, else of the open mail."},
    {"HostSetBody", 1, SetBody, "HostSetBody(text)",
     "Gives the mail being written, or the received mail that is being edited, another text; 1, or 0 with "
     "the reason."},
    {"HostHtml", 0, Html, "HostHtml()", "The HTML beside the text of the mail being written, \"\" for none."},
    {"HostSetHtml", 1, SetHtml, "HostSetHtml(html)", "Gives it other HTML; the text follows it."},
    {"HostAttachments", 0, Attachments, "HostAttachments()",
     "Names of the attachments of the mail being written, one on each line."},
    {"HostGoToLine", 1, GoToLine, "HostGoToLine(line)",
     "Moves the cursor in the text of the mail being written, 0 for the first line (SwitchDontOrikaeshi, "
     "GetDontOrikaeshi)."},
    {"HostAddress", 2, Address, "HostAddress(name, address)",
     "One recipient, whatever is in the name: \"Doe, Jane\" <jane@example.com>; \"\" with the reason when "
     "the address is not one address."},
    {"HostDecode", 2, Decode, "HostDecode(bytes, charset)",
     "Host text of the bytes of another program, such as a page that Inet_Read gave: HostDecode(page, "
     "\"utf-8\"); with \"\" as a mail "
     "would be read."},
};

}  // namespace

void SetDraftSide(DraftSide* side) { g_side = side; }

std::span<const HostFunction> DraftFunctions() { return kFunctions; }

}  // namespace wrenfold
