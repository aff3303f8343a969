// What an editor of mails has around the mail: its account, its macros, its questions and warnings, HTML.
#include "host/base/ascii.h"
#include "host/base/time_stamp_win.h"
#include "host/charset/charsets.h"
#include "host/mail/header_edit.h"
#include "host/mail/headers.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/written_mail_win.h"
#include "host/terminal/questions_win.h"
#include "host/terminal/terminal_text.h"
#include "host/writing/draft.h"

namespace wrenfold {
namespace {

std::string ToUtf8(std::string_view host) { return SystemCharsets().HostToUtf8(host); }

// --- Account ---

// The account's own name; nullopt when there is none of this name.
std::optional<std::string> FindAccount(Request& request, std::string_view name) {
  for (const std::string& each : request.state.commands.accounts.Names()) {
    if (EqualsIgnoringCase(each, name)) return each;
  }
  return std::nullopt;
}

std::string NoAccount(Request& request) {
  return "there is no account " + Quoted(ToUtf8(request.Text(0)), 60);
}

// account, and for code 88 an option.
template <bool kHasOption>
Answer SetAccount(Request& request) {
  const auto account = FindAccount(request, request.Text(0));
  if (!account) return request.Fail(NoAccount(request));
  Draft& draft = *request.state.writing.draft;
  draft.account = *account;
  const std::string sender = AccountSender(request.state, *account);
  const bool keeps_sender = kHasOption && request.Number(1) != 0;
  if (!sender.empty() && !keeps_sender) SetHeader(draft.text, "From", sender, 0);
  return Request::Done(true);
}

// Without a name the account of the mail being written, else the first one.
std::optional<std::string> MeantAccount(Request& request) {
  if (request.Number(0) != 0) return FindAccount(request, request.Text(0));
  if (request.state.HasDraft() && !request.state.writing.draft->account.empty()) {
    return request.state.writing.draft->account;
  }
  const std::vector<std::string> names = request.state.commands.accounts.Names();
  return names.empty() ? std::nullopt : std::optional(names[0]);
}

Answer From(Request& request) {
  const auto account = MeantAccount(request);
  if (!account) return request.Fail(request.Number(0) != 0 ? NoAccount(request) : "there are no accounts");
  return request.AnswerText(AccountSender(request.state, *account));
}

Answer ReplyTo(Request& request) {
  const auto account = MeantAccount(request);
  if (!account) return request.Fail(request.Number(0) != 0 ? NoAccount(request) : "there are no accounts");
  const std::string own = request.state.commands.accounts.Value(*account, "szReplyTo");
  return request.AnswerText(own.empty() ? AccountSender(request.state, *account) : own);
}

// --- Macros ---

Answer EditorMacro(Request& request) {
  return request.AnswerText(request.state.HasDraft() ? request.state.writing.draft->macro : "");
}
Answer SendMacro(Request& request) {
  return request.AnswerText(SystemCharsets().Utf8ToHost(request.state.writing.send_macro));
}
Answer Reason(Request& request) {
  return Request::AnswerNumber(static_cast<Slot>(request.state.writing.reason));
}

// --- Questions and warnings ---

Answer ConfirmSend(Request& request) {
  const std::string& text = request.state.writing.draft->text;
  const auto shown = [&text](std::string_view name) {
    return Printable(ToUtf8(HeaderValue(text, name).value_or("")));
  };
  return Request::Done(UserAgrees("send \"" + shown("Subject") + "\" to " + shown("To") + "?"));
}

template <bool WritingState::*kWarning>
Answer LeaveOut(Request& request) {
  request.state.writing.*kWarning = true;
  return Request::Done(true);
}

// --- The mail itself ---

Answer MessageId(Request& request) {
  const std::string own = OwnAddress(request.state);
  const std::size_t at = own.rfind('@');
  const std::string host = at == own.npos ? "wrenfold.invalid" : std::string(Trim(own.substr(at + 1)));
  return request.AnswerText("<" + UniqueNameNow() + "@" + host.substr(0, host.find('>')) + ">");
}

// 0 plain text, else HTML
Answer HtmlEdit(Request& request) {
  Draft& draft = *request.state.writing.draft;
  SetHtmlEditing(draft, request.Number(0) != 0, FrameOf(request.state, draft));
  return Request::Done(true);
}

constexpr Service kServices[] = {
    {19, "", EditorMacro, "file of the macro that opened the mail being written, \"\" at the prompt"},
    {49, "T", WithDraft<SetAccount<false>>, "account of the mail being written, with its sender in From"},
    {50, "T", From, "sender of an account: its `szMailFromSpecify`"},
    {51, "T", ReplyTo, "where replies to an account go: its `szReplyTo`, else its sender"},
    {79, "", SendMacro, "macro that `--send-macro` has run before each mail is sent, \"\" without one"},
    {88, "TI", WithDraft<SetAccount<true>>, "as 49; with an option that is not 0, From stays as it is"},
    {136, "", MessageId, "a new Message-ID, of time, process and number"},
    {170, "", Reason, "why the macro runs: 0 the user, 1 a mail is about to be sent"},
    {171, "", LeaveOut<&WritingState::quiet_header_changes>,
     "leaves the warning out that headers of a received mail are changed in memory only"},
    {172, "", LeaveOut<&WritingState::quiet_lost_answer>,
     "leaves the warning out that the mail that a sent one answers is not here to be marked"},
    {261, "", WithDraft<ConfirmSend>,
     "asks on the terminal whether to send the mail being written; 1 for \"y\", and with `--yes` without "
     "asking"},
    {267, "I", WithDraft<HtmlEdit>, "puts HTML beside the text of the mail being written, or takes it away"},
    {284, "", LeaveOut<&WritingState::quiet_subject>, "leaves the warning out that a mail has no subject"},
};

}  // namespace

const ServiceFamily kEditorServices = {kServices, {}};

}  // namespace wrenfold
