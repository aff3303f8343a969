// Mails are received from a folder that stands for the server, and sent out of the outbox. Nothing leaves the
// machine unless the user named a program that sends.
#include "host/shared/transport_win.h"

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <optional>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/base/plain_window_win.h"
#include "host/base/time_stamp_win.h"
#include "host/charset/charsets.h"
#include "host/files/file_hold.h"
#include "host/files/whole_file.h"
#include "host/mail/headers.h"
#include "host/mail/mail_store.h"
#include "host/post/inbox_folder.h"
#include "host/post/send_program_win.h"
#include "host/requests/shown_list.h"
#include "host/shared/written_mail_win.h"
#include "host/terminal/interrupt_win.h"
#include "host/terminal/own_code_win.h"
#include "host/terminal/shown_host_text.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;
using Kind = TransmissionStep::Kind;

constexpr char kBackgroundClass[] = "WrenfoldSmallHostTransmission";
constexpr UINT kStepMs = 10;  // between two mails of a transmission in the background

constexpr Slot kSendNow = 40104;
constexpr int kStartCode = 57;

PostOffice& Post(HostState& state) { return state.commands.post; }

std::string Utf8(std::string_view host) { return SystemCharsets().HostToUtf8(host); }

// --- Receiving ---

bool HoldsMails(const MailFolder& folder) { return !folder.removed && folder.kind != FolderKind::kSearch; }

// Where a mail of an account comes to: the folder that is named like the account, else the open one; while
// that shows what a search finds, the first.
std::size_t FolderFor(HostState& state, const std::string& account) {
  const std::vector<MailFolder>& folders = state.folders();
  const std::string name = Utf8(account);
  const auto named = std::ranges::find_if(
      folders, [&](const MailFolder& folder) { return HoldsMails(folder) && folder.name == name; });
  if (named != folders.end()) return static_cast<std::size_t>(named - folders.begin());
  if (state.folder() < folders.size() && HoldsMails(folders[state.folder()])) return state.folder();
  const auto first = std::ranges::find_if(folders, HoldsMails);
  if (first != folders.end()) return static_cast<std::size_t>(first - folders.begin());
  std::error_code error;
  fs::create_directories(Post(state).mails, error);
  return state.FolderAt(Post(state).mails);
}

// Whether a folder has a mail of the server: under the same name, or in an mbox with the same bytes.
bool Has(HostState& state, std::size_t folder, const fs::path& file) {
  std::error_code error;
  const MailFolder& here = state.folders()[folder];
  if (here.kind == FolderKind::kFolder) return fs::exists(here.path / file.filename(), error);
  const std::string raw = ReadWholeFile(file).value_or("");
  return std::ranges::any_of(state.MailsOf(folder), [&](std::size_t mail) {
    return Trim(state.Mail(mail).raw) == Trim(raw);  // an mbox ends each mail with a line end
  });
}

std::optional<std::string> Receive(HostState& state, const TransmissionStep& step) {
  const FileHold hold(step.file);
  if (hold.failure()) return hold.failure();
  const std::size_t folder = FolderFor(state, step.account);
  // Another host may have received it since the steps were made.
  std::error_code error;
  if (!fs::exists(step.file, error) && !error) return std::nullopt;
  if (step.kind == Kind::kFetch && Has(state, folder, step.file)) return std::nullopt;
  const std::size_t first = state.mail_count();
  const auto came = [&] { return state.mail_count() - first; };
  const std::string reason = state.Receive(step.file, folder, step.kind == Kind::kFetch);
  for (std::size_t mail = first; mail < state.mail_count(); ++mail) state.reception.Add(mail, step.account);
  Post(state).transmission.carried = came();
  return reason.empty() ? std::nullopt : std::optional(reason);
}

// What the folder of the server has for an account. Of mails that stay there, only those that the account's
// folder does not have.
void AddMailsOf(HostState& state, std::vector<TransmissionStep>& steps, Kind kind, const fs::path& server,
                const std::string& account) {
  const std::size_t folder = FolderFor(state, account);
  for (fs::path& file : kind == Kind::kReceive ? MailAndMboxFilesOf(server) : MailFilesOf(server)) {
    if (kind == Kind::kFetch && Has(state, folder, file)) continue;
    steps.push_back({kind, std::move(file), account});
  }
}

// --- Sending ---

// What a reader sees of a mail, without the headers that only say how it is packed, and the stamp that we
// gave it.
void ShowWouldSend(const std::string& raw) {
  const HostMessage message = MakeHostMessage(raw);
  const bool stamped =
      Trim(HeaderValue(message.text, "Message-ID").value_or("")).ends_with("@wrenfold.invalid>");
  std::string shown;
  for (std::size_t at = 0;;) {
    const auto header = FieldAt(message.text, at);
    if (!header) break;
    at += header->lines.size();
    const bool left_out = header->Is("MIME-Version") || header->Is("Content-Type") ||
                          header->Is("Content-Transfer-Encoding") ||
                          (stamped && (header->Is("Date") || header->Is("Message-ID")));
    if (!left_out) shown += header->lines;
  }
  shown += "\r\n" + message.text.substr(message.body_offset);
  for (const Attachment& attachment : message.attachments) {
    if (!shown.ends_with('\n')) shown += "\r\n";
    shown += "[attachment: " + attachment.file_name + "]\r\n";
  }
  std::string lines = "would send:\n";
  const std::string text = ShownHostText(shown);
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    lines.append(line.empty() ? "|" : "| ").append(line).append("\n");
    rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
  }
  TheTerminal().Error(lines);
}

std::optional<std::string> Send(HostState& state, const TransmissionStep& step) {
  PostOffice& post = Post(state);
  // The claim is a file, which hosts of other machines that share the folder see as well; the hold that the
  // outbox itself takes keeps hosts of this one from changing the mail meanwhile.
  const auto claim = ClaimMail(step.file);
  if (!claim && GetLastError() == ERROR_SHARING_VIOLATION) {
    post.failed.insert(step.file);
    return PathToUtf8(step.file.filename()) + ": " + kSentByAnother;
  }
  std::error_code error;
  // Another host has sent it since the steps were made.
  if (!fs::exists(step.file, error) && !error) return post.transmission.carried = 0, std::nullopt;
  const auto before = ReadWholeFile(step.file);
  const MailStamp stamp{DateHeaderNow(), UniqueNameNow(), Utf8(OwnAddress(state))};
  auto failure = post.outbox.Send(step.file, stamp, [&](const fs::path& file, const std::string& mail) {
    if (!post.send_with.empty()) return SendWithProgram(post.send_with, file, mail);
    ShowWouldSend(*before);
    return std::optional<std::string>();
  });
  if (failure && !fs::exists(step.file, error)) post.lost_copy = true;
  if (failure) post.failed.insert(step.file);
  return failure;
}

// Says why a mail waits until its writer mends it.
bool TellUndated(HostState& state, std::string_view mail) {
  const std::string when = UndatedDelivery(mail);
  if (when.empty()) return false;
  TellStatus(state,
             "the mail waits in the outbox: its Deferred-Delivery " + Quoted(when, 60) + " is no date");
  return true;
}

// --- A transmission, waited for or in the background ---

// `stop`: no further step, which is told.
void Advance(HostState& state, bool stop = IsInterrupted()) {
  Transmission& transmission = Post(state).transmission;
  const std::size_t failures = transmission.result().failures.size();
  if (stop) transmission.cancel_asked = true;
  transmission.Advance([&state](const TransmissionStep& step) {
    return step.kind == Kind::kSend ? Send(state, step) : Receive(state, step);
  });
  const TransmissionResult& result = transmission.result();
  for (std::size_t i = failures; i < result.failures.size(); ++i) {
    TheTerminal().Error("transmission: " + Printable(result.failures[i]) + "\n");
  }
  if (transmission.IsRunning()) return;
  PostOffice& post = Post(state);
  post.status = transmission.Summary();
  if (stop && result.cancelled) TheTerminal().Error("transmission: stopped; " + post.status + "\n");
  if (result.received == 0 || state.commands.application.quiet) return;
  post.sound_plays = true;
  TheTerminal().Error("sound: mail received\n");
}

HostState* g_state = nullptr;  // of the transmission in the background

LRESULT CALLBACK AnswerStepMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != WM_TIMER) return DefWindowProcA(window, message, wparam, lparam);
  const OwnCode own_code;
  if (g_state != nullptr) Advance(*g_state);
  if (g_state == nullptr || !Post(*g_state).transmission.IsRunning()) DestroyWindow(window);
  return 0;
}

// A window whose timer takes a step whenever messages are handled; it closes with the last.
void GoOnInBackground(HostState& state) {
  g_state = &state;
  const HWND window = MakePlainWindow(kBackgroundClass, AnswerStepMessage, "", 0, HWND_MESSAGE);
  if (window == nullptr || SetTimer(window, 1, kStepMs, nullptr) == 0) FinishTransmission(state);
}

Answer Outcome(Request& request) {
  const TransmissionResult& result = Post(request.state).transmission.result();
  if (!result.failures.empty()) return request.Fail(result.failures.front());
  if (result.cancelled) return request.Fail("the transmission was cancelled");
  return Request::Done(true);
}

}  // namespace

std::vector<TransmissionStep> StepsToReceive(HostState& state, Kind kind, bool all_accounts) {
  std::vector<TransmissionStep> steps;
  state.reception.Begin();
  const std::vector<std::string> accounts = AccountNames(state);
  const fs::path& server = kind == Kind::kFetch ? Post(state).imap : Post(state).inbox;
  AddMailsOf(state, steps, kind, server, accounts[0]);
  for (const std::string& account : accounts) {
    state.reception.Ask(account);
    if (const auto folder = AccountFolder(server, Utf8(account)))
      AddMailsOf(state, steps, kind, *folder, account);
    if (!all_accounts) break;
  }
  return steps;
}

std::vector<TransmissionStep> StepsToSend(HostState& state) {
  std::vector<TransmissionStep> steps;
  for (fs::path& file : Post(state).outbox.Waiting(DateHeaderNow()))
    steps.push_back({Kind::kSend, std::move(file), ""});
  return steps;
}

Answer Transmit(Request& request, Slot command, std::vector<TransmissionStep> steps) {
  HostState& state = request.state;
  Post(state).transmission.Start(command, std::move(steps));
  if (!Post(state).transmission.IsRunning()) Post(state).status = Post(state).transmission.Summary();
  if (request.code() == kStartCode) {
    if (Post(state).transmission.IsRunning()) GoOnInBackground(state);
    return Request::Done(true);
  }
  FinishTransmission(state);
  return Outcome(request);
}

std::vector<std::string> AccountNames(HostState& state) {
  std::vector<std::string> names = state.commands.accounts.Names();
  if (names.empty()) names.push_back(FirstAccount(state));
  return names;
}

void TellStatus(HostState& state, const std::string& line) {
  Post(state).status = SystemCharsets().Utf8ToHost(line);
  TheTerminal().Error(line + "\n");
}

void FinishTransmission(HostState& state) {
  while (Post(state).transmission.IsRunning()) Advance(state);
}

void StopTransmission(HostState& state) {
  if (Post(state).transmission.IsRunning()) Advance(state, true);
}

Answer PostLater(Request& request, std::string_view mail) {
  if (!HasRecipients(mail)) return request.Fail("the mail has no recipient");
  fs::path file;
  if (auto reason = Post(request.state).outbox.Add(mail, UniqueNameNow(), file)) return request.Fail(*reason);
  Post(request.state).put.insert(file);
  TellUndated(request.state, mail);
  return Request::Done(true);
}

Answer PostNow(Request& request, std::string_view mail) {
  if (!HasRecipients(mail)) return request.Fail("the mail has no recipient");
  fs::path file;
  if (auto reason = Post(request.state).outbox.Add(mail, UniqueNameNow(), file)) return request.Fail(*reason);
  Post(request.state).put.insert(file);
  if (!IsDue(mail, DateHeaderNow())) {
    if (!TellUndated(request.state, mail))
      TellStatus(request.state, "the mail waits in the outbox for the time of its Deferred-Delivery");
    return Request::Done(true);
  }
  FinishTransmission(request.state);
  return Transmit(request, kSendNow, {{Kind::kSend, file, ""}});
}

bool HasUnsentMails(HostState& state) {
  std::error_code error;
  return Post(state).lost_copy || std::ranges::any_of(Post(state).failed, [&](const fs::path& file) {
           return fs::exists(file, error);
         });
}

std::string WaitingMails(HostState& state) {
  const PostOffice& post = Post(state);
  WaitingNotice notice{PathToUtf8(post.outbox.folder())};
  const auto is_of_run = [&post](const fs::path& file) {
    return post.transmission.result().cancelled || post.put.contains(file) || post.failed.contains(file);
  };
  for (const fs::path& file : post.outbox.Waiting()) ++(is_of_run(file) ? notice.own : notice.others);
  notice.deferred = notice.own + notice.others;
  if (notice.own > 0) notice.deferred -= post.outbox.Waiting(DateHeaderNow()).size();
  return NoticeOf(notice);
}

}  // namespace wrenfold
