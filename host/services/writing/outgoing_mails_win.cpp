// New mails, replies, forwards and resent mails, and what becomes of a written one: it goes to the outbox.
#include <span>
#include <utility>

#include "host/base/ascii.h"
#include "host/charset/charsets.h"
#include "host/mail/header_edit.h"
#include "host/mail/headers.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/folder_lookup_win.h"
#include "host/shared/inner_macros_win.h"
#include "host/shared/transport_win.h"
#include "host/shared/written_mail_win.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/terminal_win.h"
#include "host/writing/draft_file.h"
#include "host/writing/draft_text.h"
#include "host/writing/mail_rewrite.h"
#include "host/writing/outgoing_text.h"
#include "host/writing/quoting.h"
#include "host/writing/recipients.h"
#include "host/writing/resent_mail.h"
#include "src/bridge/host_protocol.h"

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
  const std::size_t width = request.state.Folds(root) ? kDefaultWidth : kUnfoldedWidth;
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

// The user's macro has its turn, and the mail is looked at once more.
std::optional<std::string> PrepareSending(HostState& state) {
  const Draft before = *state.writing.draft;
  if (auto reason = WhyHeldBack(state)) return reason;
  // It goes on as it came, whatever the macro did to it.
  if (before.resent) state.writing.draft = before;
  if (!state.writing.quiet_subject &&
      Trim(HeaderValue(state.CurrentText(), "Subject").value_or("")).empty()) {
    Tell("the mail has no subject (NoWarningNoSubject() leaves this out)");
  }
  return std::nullopt;
}

// A mail that would wait in the outbox for ever, or miss one of its readers.
std::optional<std::string> WhyUnaddressed(std::string_view name, std::string_view list) {
  const std::string utf8 = SystemCharsets().HostToUtf8(list);
  const std::string_view entry = UnreadableRecipient(utf8);
  if (entry.empty()) return std::nullopt;
  return std::string(name) + " names no address: " + std::string(entry);
}

std::optional<std::string> WhyUnaddressed(std::string_view text, std::span<const char* const> names) {
  std::size_t at = 0;
  while (const auto header = FieldAt(text, at)) {
    at += header->lines.size();
    for (const char* const name : names) {
      if (!header->Is(name)) continue;
      if (auto reason = WhyUnaddressed(name, header->Value())) return reason;
    }
  }
  return std::nullopt;
}

// A mail that is resent goes to its new recipients alone, any other one names them in headers of its own.
std::optional<std::string> WhyUnaddressed(const Draft& draft) {
  static constexpr const char* kNames[] = {"To", "Cc", "Bcc"};
  static constexpr const char* kResentNames[] = {"Resent-To", "Resent-Cc", "Resent-Bcc"};
  if (draft.resent) {
    if (auto reason = WhyNotAsItCame(draft)) return reason;
    return WhyUnaddressed(*BlockOf(draft), kResentNames);
  }
  for (const char* const name : kResentNames) {
    if (HeaderValue(draft.text, name))
      return "a mail of your own has no " + std::string(name) + ": MakeResentForward() hands one on";
  }
  return WhyUnaddressed(draft.text, kNames);
}

// A copy for the folder that a macro chose for sent mails.
void KeepSent(HostState& state, const std::string& mail) {
  std::optional<std::size_t>& folder = state.folder_state().sent_folder;
  if (!folder) return;
  const std::string reason = state.AddMail(mail, *folder, kMailRead);
  if (!reason.empty()) Tell("no copy of the sent mail is kept: " + reason);
  folder.reset();
}

template <bool kAtOnce>
Answer Send(Request& request) {
  HostState& state = request.state;
  if (const auto reason = PrepareSending(state)) return request.Fail(*reason);
  if (const auto reason = WhyUnaddressed(*state.writing.draft)) return request.Fail(*reason);
  const std::string mail = FinishedMail(*state.writing.draft, NewStamp(state));
  const std::size_t before = state.commands.post.put.size();
  const Answer answer = kAtOnce ? PostNow(request, mail) : PostLater(request, mail);
  // A mail that lies in the outbox is no draft, whether it could be sent or not.
  if (state.commands.post.put.size() == before) return answer;
  KeepSent(state, mail);
  FinishDraft(state);
  return answer;
}

// --- What becomes of the mail being written ---

Answer KeepRootFlags(Request& request) {
  request.state.folder_state().keep_root_flags = true;
  return Request::Done(true);
}

Answer SetSentFolder(Request& request, std::size_t folder) {
  request.state.folder_state().sent_folder = folder;
  return Request::Done(true);
}

// --- Resending ---

constexpr Slot kSendNow = 53;
constexpr Slot kSendLater = 54;
constexpr Slot kOpen = 101;

// The mail as it came, for its new headers to be looked at.
Draft OpenedMail(HostState& state, const std::string& block) {
  const HostMessage& message = state.Message(state.root());
  Draft draft;
  draft.purpose = DraftPurpose::kForward;
  draft.text = block + message.text;
  draft.attachments = message.attachments;
  draft.resent = state.Mail(state.root()).raw;
  return draft;
}

// The user's macro sees the mail, with its new header, as the one being written. What it changes is not sent.
std::optional<std::string> WhyNotResent(HostState& state, const std::string& resent_header) {
  if (state.writing.send_macro.empty()) return std::nullopt;
  WritingState& writing = state.writing;
  const std::size_t begun = writing.begun;
  const Draft seen = OpenedMail(state, resent_header);
  auto draft = std::exchange(writing.draft, seen);
  auto kept = std::exchange(writing.kept, seen);
  const auto switched = std::exchange(writing.switched, 0);
  auto reason = WhyHeldBack(state);
  // A mail that the macro began is kept as a draft.
  if (writing.begun != begun) KeepDraft(state);
  writing.draft = std::move(draft);
  writing.kept = std::move(kept);
  writing.switched = switched;
  return reason;
}

// recipient, mode, 1 = as in the log (which is the same mail here)
Answer Resend(Request& request) {
  if (!request.HasText(0)) return request.Fail("no recipient to resend the mail to");
  HostState& state = request.state;
  const Slot mode = request.Number(1) & ~wfinfo::kResendAsBcc;
  const bool as_bcc = (request.Number(1) & wfinfo::kResendAsBcc) != 0;
  const std::string header = ResentText("", request.Text(0), as_bcc);
  if (mode == kOpen) return BeginWriting(request, OpenedMail(state, header));
  if (mode != kSendNow && mode != kSendLater)
    return request.Fail("no such way to resend: " + std::to_string(request.Number(1)));
  if (const auto reason = WhyUnaddressed(as_bcc ? "Resent-Bcc" : "Resent-To", request.Text(0)))
    return request.Fail(*reason);
  const std::string mail =
      ResentMail(HeaderOfHostText(header), state.Mail(state.root()).raw, NewStamp(state));
  if (const auto reason = WhyNotResent(state, header)) return request.Fail(*reason);
  return mode == kSendNow ? PostNow(request, mail) : PostLater(request, mail);
}

constexpr Service kServices[] = {
    {104, "TII", WithRoot<Resend>,
     "the first parameter is the recipient: the root mail with `Resent-To` or `Resent-Bcc` in front, opened, "
     "sent or put into the outbox as it came"},
    {301, nullptr, WithDraft<KeepRootFlags>,
     "the mail being written does not mark the one that it answers or forwards once it is sent"},
    {302, nullptr, WithDraft<WithFolder<SetSentFolder>>,
     "a copy of the mail being written goes to the folder when it is sent or shown"},
};

constexpr Command kCommands[] = {
    {40002, NewMail, "a mail with empty To and Subject becomes the current one"},
    {40019, WithRoot<Reply>,
     "To, Cc, Subject, In-Reply-To, References and the quoted body of the root mail ([replies](#replies))"},
    {40022, WithRoot<Forward>, "empty To, the subject with `Fwd:`, headers and body of the root mail"},
    {40087, WithDraft<Send<false>>,
     "puts the mail being written into the [outbox](#transmission); then the open mail is the current one "
     "again, answered or forwarded"},
    {40104, WithDraft<Send<true>>,
     "[sends](#transmission) the mail being written at once; then the open mail is the current one again, "
     "answered or forwarded; 0 without a recipient, and when it could not be sent and waits in the outbox"},
    {40185, WithRoot<ForwardAttached<false>>,
     "empty To, the subject with `Fwd:`, the root mail as an attachment"},
    {40354, WithRoot<ForwardAttached<true>>, "as 40185, the root mail as it came in its file"},
};

}  // namespace

const ServiceFamily kOutgoingMailsServices = {kServices, kCommands};

}  // namespace wrenfold
