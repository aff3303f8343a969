// New mails, replies, forwards and resent mails, and what happens when they are sent: nothing leaves the
// machine, what would be sent is shown.
#include <optional>
#include <utility>

#include "host/charset/charsets.h"
#include "host/mail/draft_text.h"
#include "host/mail/header_edit.h"
#include "host/mail/quoting.h"
#include "host/requests/request_server_win.h"
#include "host/services/draft_win.h"
#include "host/services/services_win.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

// --- Beginning ---

Answer NewMail(Request& request) {
  BeginWriting(request, DraftPurpose::kNewMail, "To: \r\nSubject: \r\n\r\n", "");
  return Request::Done(true);
}

std::string QuotedBody(Request& request) {
  const std::size_t root = request.state.root();
  const HostMessage& message = request.state.Message(root);
  const std::size_t width = request.state.Folds(root) ? kDefaultWidth : kNoFolding;
  return FoldAndQuote(std::string_view(message.text).substr(message.body_offset), kQuoteMark, width);
}

// As a menu command without parameters; else 40019, kind, 1 = copy the attachments, mode for several mails,
// option. The last two are not looked at: one mail is open.
Answer Reply(Request& request) {
  const HostMessage& message = request.state.Message(request.state.root());
  const Recipients recipients =
      ReplyRecipients(message.text, static_cast<ReplyKind>(request.Number(1)), OwnAddress(request));
  std::string headers = ReplyTo(message.text, "");
  SetHeader(headers, "To", recipients.to, 0);
  if (!recipients.cc.empty()) SetHeader(headers, "Cc", recipients.cc, 0);
  const bool with_attachments = request.Number(2) == 1;
  BeginWriting(request, DraftPurpose::kReply, headers, QuotedBody(request));
  if (with_attachments) {
    for (const Attachment& attachment : message.attachments)
      request.state.commands.draft.attachments.push_back(attachment.file_name);
  }
  return Request::Done(true);
}

Answer Forward(Request& request) {
  const std::string& text = request.state.Message(request.state.root()).text;
  BeginWriting(request, DraftPurpose::kForward, ForwardHeaders(text), ForwardedText(text));
  return Request::Done(true);
}

// The mail goes along as an attachment.
Answer ForwardAttached(Request& request) {
  const std::size_t root = request.state.root();
  BeginWriting(request, DraftPurpose::kForward, ForwardHeaders(request.state.Message(root).text), "");
  request.state.commands.draft.attachments.push_back(request.state.Header(root, "Subject") + ".eml");
  return Request::Done(true);
}

// --- Sending ---

std::string WithAttachments(const std::string& mail, const DraftParts& parts) {
  std::string text = mail;
  if (!parts.attachments.empty() && !text.ends_with('\n')) text += "\r\n";
  for (const std::string& name : parts.attachments) text += "[attachment: " + name + "]\r\n";
  return text;
}

// A copy for the folder that a macro chose for sent mails.
void KeepSent(Request& request, std::string mail) {
  std::optional<std::size_t>& folder = request.state.folder_state().sent_folder;
  if (!folder) return;
  SetHeader(mail, "Content-Type", "text/plain; charset=utf-8", 0);
  const std::string reason = request.state.AddMail(SystemCharsets().HostToUtf8(mail), *folder, kMailRead);
  if (!reason.empty()) TheTerminal().Error("wrenfold: no copy of the sent mail is kept: " + reason + "\n");
  folder.reset();
}

// Marks what the mail being written answers or forwards, and closes it.
void FinishDraft(Request& request) {
  KeepSent(request, request.state.CurrentText());
  const DraftPurpose purpose = request.state.draft_purpose();
  std::uint32_t mark = 0;
  if (purpose == DraftPurpose::kReply) mark = kStateReplied;
  if (purpose == DraftPurpose::kForward) mark = kStateForwarded;
  const std::size_t answered = request.state.commands.draft.answered;
  const bool keeps_flags = std::exchange(request.state.folder_state().keep_root_flags, false);
  if (!keeps_flags && answered < request.state.mail_count()) request.state.ChangeState(answered, mark, mark);
  request.state.EndDraft();
}

template <bool kAtOnce>
Answer Send(Request& request) {
  if (!request.state.HasDraft()) return {};
  std::string mail = WithAttachments(request.state.CurrentText(), request.state.commands.draft);
  if (kAtOnce) {
    ShowWouldSend(mail);
  } else {
    request.state.commands.outbox.push_back(std::move(mail));
  }
  FinishDraft(request);
  return Request::Done(true);
}

// What is to be transmitted: there is one account, so any value means all of it.
Answer SelectTransmit(Request&) { return Request::Done(true); }

Answer Transmit(Request& request) {
  for (const std::string& mail : request.state.commands.outbox) ShowWouldSend(mail);
  request.state.commands.outbox.clear();
  return Request::Done(true);
}

// --- Resending ---

constexpr Slot kSendNow = 53;
constexpr Slot kSendLater = 54;
constexpr Slot kOpen = 101;
constexpr Slot kAsBcc = 0x80000000;

// recipient, mode, 1 = as in the log (which is the same mail here)
Answer Resend(Request& request) {
  if (!request.HasText(0)) return {};
  const Slot mode = request.Number(1);
  std::string text =
      ResentText(request.state.Message(request.state.root()).text, request.Text(0), (mode & kAsBcc) != 0);
  switch (mode & ~kAsBcc) {
    case kSendNow:
      ShowWouldSend(text);
      return Request::Done(true);
    case kSendLater:
      request.state.commands.outbox.push_back(std::move(text));
      return Request::Done(true);
    case kOpen:
      BeginWriting(request, DraftPurpose::kForward, std::move(text), "");
      return Request::Done(true);
    default:
      return {};
  }
}

constexpr Service kServices[] = {{71, nullptr, SelectTransmit}, {104, "TII", WithRoot<Resend>}};

constexpr Command kCommands[] = {
    {40002, NewMail},     {40019, WithRoot<Reply>}, {40022, WithRoot<Forward>},         {40024, Transmit},
    {40087, Send<false>}, {40104, Send<true>},      {40185, WithRoot<ForwardAttached>},
};

}  // namespace

const ServiceFamily kDraftsServices = {kServices, kCommands};

}  // namespace wrenfold
