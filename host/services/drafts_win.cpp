// New mails, replies, forwards and resent mails, and what happens when they are sent: nothing leaves the
// machine, what would be sent is shown.
#include "host/base/ascii.h"
#include "host/mail/draft_file.h"
#include "host/mail/draft_text.h"
#include "host/mail/header_edit.h"
#include "host/mail/headers.h"
#include "host/mail/mail_rewrite.h"
#include "host/mail/quoting.h"
#include "host/requests/request_server_win.h"
#include "host/services/draft_win.h"
#include "host/services/macros_win.h"
#include "host/services/services_win.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

// --- Beginning ---

Answer NewMail(Request& request) {
  Draft draft;
  draft.text = "To: \r\nSubject: \r\n\r\n";
  return BeginWriting(request, std::move(draft));
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
      ReplyRecipients(message.text, static_cast<ReplyKind>(request.Number(1)), OwnAddress(request.state));
  Draft draft;
  draft.purpose = DraftPurpose::kReply;
  draft.text = ReplyTo(message.text, "");
  SetHeader(draft.text, "To", recipients.to, 0);
  if (!recipients.cc.empty()) SetHeader(draft.text, "Cc", recipients.cc, 0);
  draft.text += QuotedBody(request);
  if (request.Number(2) == 1) draft.attachments = message.attachments;
  return BeginWriting(request, std::move(draft));
}

Draft ForwardOf(const std::string& text) {
  Draft draft;
  draft.purpose = DraftPurpose::kForward;
  draft.text = ForwardHeaders(text);
  return draft;
}

// The files of the mail go along.
Answer Forward(Request& request) {
  const HostMessage& message = request.state.Message(request.state.root());
  Draft draft = ForwardOf(message.text);
  draft.text += ForwardedText(message.text);
  draft.attachments = message.attachments;
  return BeginWriting(request, std::move(draft));
}

// The mail goes along as an attachment: with the changes that were made to it, or as it came.
template <bool kAsItCame>
Answer ForwardAttached(Request& request) {
  HostState& state = request.state;
  const std::size_t root = state.root();
  Draft draft = ForwardOf(state.Message(root).text);
  std::string raw = state.Mail(root).raw;
  if (const auto& changed = state.Changes(root); changed && !kAsItCame) {
    raw = RewrittenMail(raw, state.Message(root).text, *changed, "=_" + NewStamp(state).unique);
  }
  const std::string subject = state.Header(root, "Subject");
  draft.attachments.push_back(
      {(subject.empty() ? "mail" : subject) + ".eml", "message/rfc822", std::move(raw)});
  return BeginWriting(request, std::move(draft));
}

// --- Sending ---

std::string WithAttachments(const Draft& draft) {
  std::string text = draft.text;
  if (!draft.attachments.empty() && !text.ends_with('\n')) text += "\r\n";
  for (const Attachment& attachment : draft.attachments)
    text += "[attachment: " + attachment.file_name + "]\r\n";
  return text;
}

// The user's macro has its turn, and the mail is looked at once more.
std::optional<std::string> PrepareSending(HostState& state) {
  if (!state.writing.send_macro.empty()) {
    const auto value = RunBeforeSending(state);
    if (!value) return "the macro before sending, " + state.writing.send_macro + ", cannot be run";
    if (*value == 0) return "the macro before sending, " + state.writing.send_macro + ", refused the mail";
    if (!state.HasDraft())
      return "the macro before sending, " + state.writing.send_macro + ", closed the mail";
  }
  if (!state.writing.quiet_subject &&
      Trim(HeaderValue(state.CurrentText(), "Subject").value_or("")).empty()) {
    Tell("the mail has no subject (NoWarningNoSubject() leaves this out)");
  }
  return std::nullopt;
}

// A copy for the folder that a macro chose for sent mails.
void KeepSent(HostState& state) {
  std::optional<std::size_t>& folder = state.folder_state().sent_folder;
  if (!folder) return;
  const std::string reason =
      state.AddMail(FinishedMail(*state.writing.draft, NewStamp(state)), *folder, kMailRead);
  if (!reason.empty()) Tell("no copy of the sent mail is kept: " + reason);
  folder.reset();
}

template <bool kAtOnce>
Answer Send(Request& request) {
  HostState& state = request.state;
  if (!state.HasDraft()) return request.Fail("no mail is being written");
  if (const auto reason = PrepareSending(state)) return request.Fail(*reason);
  std::string mail = WithAttachments(*state.writing.draft);
  if (kAtOnce) {
    ShowWouldSend(mail);
  } else {
    state.commands.outbox.push_back(std::move(mail));
  }
  KeepSent(state);
  FinishDraft(state);
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

// The mail and its files; the multipart around them is made anew.
Answer OpenResent(Request& request, std::string text) {
  Draft draft;
  draft.purpose = DraftPurpose::kForward;
  draft.text = std::move(text);
  draft.attachments = request.state.Message(request.state.root()).attachments;
  return BeginWriting(request, std::move(draft));
}

// recipient, mode, 1 = as in the log (which is the same mail here)
Answer Resend(Request& request) {
  if (!request.HasText(0)) return request.Fail("no recipient to resend the mail to");
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
      return OpenResent(request, std::move(text));
    default:
      return request.Fail("no such way to resend: " + std::to_string(mode));
  }
}

constexpr Service kServices[] = {
    {71, nullptr, SelectTransmit, "1; whatever is chosen, all waiting mails are meant"},
    {104, "TII", WithRoot<Resend>,
     "the first parameter is the recipient: the root mail with `Resent-To` or `Resent-Bcc` in front, opened, "
     "shown or kept for the next transmission"},
};

constexpr Command kCommands[] = {
    {40002, NewMail, "a mail with empty To and Subject becomes the current one"},
    {40019, WithRoot<Reply>,
     "To, Cc, Subject, In-Reply-To, References and the quoted body of the root mail ([replies](#replies))"},
    {40022, WithRoot<Forward>, "empty To, the subject with `Fwd:`, headers and body of the root mail"},
    {40024, Transmit, "shows the mails that wait on standard error, as `would send:`, and forgets them"},
    {40087, Send<false>,
     "keeps the mail being written for the next transmission; then the open mail is the current one again, "
     "answered or forwarded"},
    {40104, Send<true>,
     "shows the mail being written at once; then the open mail is the current one again, answered or "
     "forwarded"},
    {40185, WithRoot<ForwardAttached<false>>,
     "empty To, the subject with `Fwd:`, the root mail as an attachment"},
    {40354, WithRoot<ForwardAttached<true>>, "as 40185, the root mail as it came in its file"},
};

}  // namespace

const ServiceFamily kDraftsServices = {kServices, kCommands};

}  // namespace wrenfold
